// edit/press.cpp: what a mouse press leaves behind for the drag that follows it.
// Layer: edit. Written by the click dispatcher and the press handlers, read by the drag routines.
#include "edit/press.h"

#include "host/toolbox.h"

int modkeywas = 0;
std::int16_t g_grabbedthird = THIRD_START;
bool g_pointerhidden = false;

void brisolan_bringpointer() {
    if (g_pointerhidden) ShowCursor();
    g_pointerhidden = false;
}

void brisolan_resetpress() {
    modkeywas = 0;
    g_grabbedthird = THIRD_START;
    brisolan_bringpointer();
}
