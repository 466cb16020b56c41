// edit/params.h: the parameters' descriptions and values, by message and by the legend.
// Layer: edit. Called by the host through "setparam", by the click dispatcher, the number field and the drags.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "setparam" index name display min max default interval scale notenames: describes one parameter anew. Any other
// count, types or index is one error line and changes nothing. min and max are taken as they come. [main]
void brisolan_setparam(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);

// A press in the legend strip: on a name underlines it (nothing when `flag` is not 0), on a value begins to drag it, on a
// picture pops up the role menu. 1 when the point is in the strip, else 0. [main]
int brisolan_legendclick(brisolan* x, Point where, int flag);

// The number field's callback: the value goes to the legend and to the selected events, or with none selected becomes
// the default. Gives 0. [main]
int brisolan_paramtrack(brisolan* x, std::int32_t value);

// Binds the number field to a parameter: rectangle, range and value from its record. [main]
void brisolan_paramtonum(brisolan* x, param_record* p, int index);

// Underlines a parameter's name as the target of typing, or takes every underline away. [main]
void brisolan_typeparam(param_record* p);
void brisolan_untypeparams(brisolan* x);

// What a press on a name would open; nothing does. [main]
void brisolan_editparam(brisolan* x, param_record* p, int index);

// Makes the event `firstsel` and redraws the value panel. [main]
void brisolan_evttolegend(brisolan* x, event* e);

// Shows `firstsel` in the legend at once; when there is none and not exactly one event is counted as selected, takes
// the event at the window point or else the first selected one, and does nothing when there is none. [main]
void brisolan_selectedtolegend(brisolan* x, Point where);

// `index` when that parameter has no role, else the first of 1 to 7 without one, else 1. [main]
int brisolan_openparam(const brisolan* x, int index);

// Whether the point lies above the bottom scroll bar's row. [main]
int brisolan_scaleclick(const brisolan* x, Point where);
