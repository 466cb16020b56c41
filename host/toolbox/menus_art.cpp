// The menus' texts.
// Toolbox art: leans on resources.h.
// Read by resources.cpp.
#include "host/toolbox/resources.h"

// Choosing item i gives a parameter the display role i - 1; the eighth opens the inspector. Items 6 and 7 stand for roles
// that there are not, so they can only part and title what follows.
const std::array<const char*, 8> ROLE_MENU = {
    "None", "Time axis", "Vertical axis", "Label", "Bar length", "-", "(This object", "Inspector...",
};
