// host/boxes/boxes.h: the small classes that a patch needs around the object.
// Layer: host; leans on host/kel.h alone, as any class does.
// Called by the program and the tests after they started the host.
#pragma once

// Loads every class of this folder into the host; once after each start of the host. [main]
void boxes_load();

// One class each. [main]
void comment_setup();
void delay_setup();
void gate_setup();
void loadbang_setup();
void makenote_setup();
void message_setup();
void notein_setup();
void noteout_setup();
void print_setup();
void receive_setup();
void tempo_setup();
void timer_setup();
