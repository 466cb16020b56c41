// host/kernel/patcher_start.h: the patcher's part in the start and the end of the host.
// Layer: kernel, private to kernel.cpp and patcher.cpp.
#pragma once

// Registers the classes of patchers and of the receiver "#N" and binds it; frees the receiver. [main]
void kel_patcher_start();
void kel_patcher_end();
