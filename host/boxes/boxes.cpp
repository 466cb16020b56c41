// host/boxes/boxes.cpp: loading the small classes.
// Layer: host.
#include "host/boxes/boxes.h"

void boxes_load() {
    comment_setup();
    delay_setup();
    gate_setup();
    loadbang_setup();
    makenote_setup();
    message_setup();
    notein_setup();
    noteout_setup();
    print_setup();
    receive_setup();
    tempo_setup();
    timer_setup();
}
