// view/legendvalues.cpp: what the legend shows: an event's values, or the defaults.
// Layer: view.
// Called by the legend's drawing and by the drags that follow an event's values.
#include "view/legendvalues.h"

namespace {

void stop_underlining(param_record& p) {
    p.underline = std::uint8_t{0};
    p.typing_mark = std::uint8_t{0};
}

} // namespace

void brisolan_copytolegend(brisolan* x, const event* e) {
    for (int i = 0; i < NPARAMS; ++i) {
        param_record& p = x->params[static_cast<std::size_t>(i)];
        stop_underlining(p);
        p.legvalue = event_param(*e, i);
    }
}

void brisolan_defaultlegend(brisolan* x) {
    for (param_record& p : x->params) {
        stop_underlining(p);
        p.legvalue = p.defvalue.get();
    }
}

void brisolan_filllegend(brisolan* x) {
    if (const event* e = x->firstsel)
        brisolan_copytolegend(x, e);
    else
        brisolan_defaultlegend(x);
}
