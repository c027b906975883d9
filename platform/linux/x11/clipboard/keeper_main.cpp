#include "platform/linux/x11/clipboard/keeper_process.h"

// The keeper for programs that embed the library. Such a program may have threads, so the keeper cannot be a fork of
// it. Started by `lomaris::spawnKeeper`; not meant to be run directly.
int main() { lomaris::runKeeperProgram(); }
