// host/desktop/audio_quiet.h: keeps what sound libraries write to standard error by themselves off it.
// Layer: desktop platform. Called before a library that may bring alsa-lib with it is used.
#pragma once

// alsa-lib's own lines are dropped from now on; ours are not its. Nothing where there is no alsa-lib. [main]
void alsa_be_quiet();
