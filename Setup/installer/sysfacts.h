#pragma once
// The facts about this machine that the log's head states.
#include "messages/logfile.h"

SystemFacts GatherSystemFacts();
