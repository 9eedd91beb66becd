// The sample product's shared library: a file with a version resource, nothing more.
#include <windows.h>

extern "C" __declspec(dllexport) DWORD WINAPI VTShareVersion() { return 0x00060000; }

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
