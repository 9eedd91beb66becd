// What a ProgID tells about a server, and which program a registered command names.
#include "oleserver/serverdesc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// "maker own version" of a ProgID.
std::string Describe(const char* progId, const char* program = "") {
  const ServerDescription server = DescribeServer(progId, program);
  EXPECT_FALSE(server.convertsToUs);
  return server.maker + (server.own ? " own " : " other ") + std::to_string(server.version);
}

TEST(ServerDescriptions, AShortNameIsMicrosoftsWithItsVersion) {
  EXPECT_EQ(Describe("Equation.3"), "MS other 3");
  EXPECT_EQ(Describe("Equation.2"), "MS other 2");
  EXPECT_EQ(Describe("Equation.1234"), "MS other 1234");
}

TEST(ServerDescriptions, TheThirdReleaseIsRecognisedByItsWholeName) {
  EXPECT_EQ(Describe("Equation.KVRX36"), "KV own 3");
  EXPECT_EQ(Describe("Equation.KVRX367"), "KV own 367");
  EXPECT_EQ(Describe("Equation.KVRX3"), "KV own 3");
}

TEST(ServerDescriptions, ALongNameHoldsMakerProductAndVersion) {
  EXPECT_EQ(Describe("Equation.KVRX5"), "KV own 5");
  EXPECT_EQ(Describe("Equation.KVRX12"), "KV own 12");
  EXPECT_EQ(Describe("Equation.COEE2"), "CO other 2");
}

TEST(ServerDescriptions, TheProductsLettersMayBeOfAnyCase) {
  EXPECT_EQ(Describe("Equation.kvrx5"), "kv own 5");
  EXPECT_EQ(Describe("Equation.KVRx5"), "KV own 5");
}

TEST(ServerDescriptions, TheProductsLettersMakeAServerOwnWhoeverMadeIt) {
  EXPECT_EQ(Describe("Equation.ABRX5"), "AB own 5");
  EXPECT_EQ(Describe("Equation.KVRY5"), "KV other 5");
}

TEST(ServerDescriptions, FourCharactersAreMicrosofts) { EXPECT_EQ(Describe("Equation.KVRX"), "MS other 0"); }

TEST(ServerDescriptions, AVersionThatIsNoNumberIsZero) {
  EXPECT_EQ(Describe("Equation.KVRXab"), "KV own 0");
  EXPECT_EQ(Describe("Equation."), "MS other 0");
  EXPECT_EQ(Describe("Equation.abc"), "MS other 0");
}

TEST(ServerDescriptions, TheNumberEndsAtTheFirstOtherCharacter) {
  EXPECT_EQ(Describe("Equation.KVRX5.1"), "KV own 5");
  EXPECT_EQ(Describe("Equation.2b"), "MS other 2");
}

TEST(ServerDescriptions, AVersionOfManyDigitsStaysPositive) {
  EXPECT_GT(DescribeServer("Equation.KVRX99999999999999999999", "").version, 0);
}

TEST(ServerDescriptions, WithoutADotTheProgramDecides) {
  EXPECT_EQ(Describe("Equation", "Veltrane"), "KV own 3");
  EXPECT_EQ(Describe("Equation", "VELTRANE"), "KV own 3");
  EXPECT_EQ(Describe("Equation", "eqnedit"), "MS other 1");
  EXPECT_EQ(Describe("Equation", ""), "MS other 1");
  EXPECT_EQ(Describe("", ""), "MS other 1");
}

TEST(ServerDescriptions, TheProgramDecidesNothingWithADot) {
  EXPECT_EQ(Describe("Equation.3", "Veltrane"), "MS other 3");
}

TEST(ServerDescriptions, AnotherWordBeforeTheDotChangesNothing) {
  EXPECT_EQ(Describe("Formula.3"), "MS other 3");
}

TEST(ServerPrograms, APlainPathStays) {
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.exe"), "C:\\eq\\eqnedit.exe");
}

TEST(ServerPrograms, ASwitchIsCutOff) {
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.exe /Automation"), "C:\\eq\\eqnedit.exe");
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.EXE -x"), "C:\\eq\\eqnedit.EXE");
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.exe/Automation"), "C:\\eq\\eqnedit.exe");
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.exe\t/Automation"), "C:\\eq\\eqnedit.exe");
}

TEST(ServerPrograms, AnUnquotedPathMayHoldBlanks) {
  EXPECT_EQ(ServerProgram("C:\\Program Files\\eq\\eqnedit.exe /Automation"),
            "C:\\Program Files\\eq\\eqnedit.exe");
}

TEST(ServerPrograms, AFolderThatEndsInExeIsNoProgram) {
  EXPECT_EQ(ServerProgram("C:\\my.exes\\eq ed.exe"), "C:\\my.exes\\eq ed.exe");
}

TEST(ServerPrograms, AQuotedPathEndsAtTheClosingQuote) {
  EXPECT_EQ(ServerProgram("\"C:\\Program Files\\eq ed.exe\" /x \"y\""), "C:\\Program Files\\eq ed.exe");
  EXPECT_EQ(ServerProgram("  \"C:\\eq.exe\""), "C:\\eq.exe");
}

TEST(ServerPrograms, AMissingClosingQuoteTakesTheRest) {
  EXPECT_EQ(ServerProgram("\"C:\\Program Files\\eq.exe /x"), "C:\\Program Files\\eq.exe /x");
  EXPECT_EQ(ServerProgram("\""), "");
}

TEST(ServerPrograms, WithoutExeTheFirstBlankEnds) {
  EXPECT_EQ(ServerProgram("eqnedit -x"), "eqnedit");
  EXPECT_EQ(ServerProgram("C:\\eq\\eqnedit.com"), "C:\\eq\\eqnedit.com");
  EXPECT_EQ(ServerProgram(".ex"), ".ex");
}

TEST(ServerPrograms, NothingIsNoProgram) {
  EXPECT_EQ(ServerProgram(""), "");
  EXPECT_EQ(ServerProgram("  "), "");
}

}  // namespace
