// edit/keys.cpp: keys typed in the editor window.
// Layer: edit. Called by the host through "key".
#include "edit/keys.h"

#include <algorithm>

#include "core/sequence.h"
#include "edit/drag.h"
#include "io/clipboard.h"
#include "view/events.h"
#include "view/scroll.h"
#include "view/window.h"

namespace {

constexpr std::uint16_t KEY_DELETE = 8;
constexpr std::uint16_t KEY_RETURN = 13;
constexpr std::uint16_t KEY_LEFT = 28;
constexpr std::uint16_t KEY_RIGHT = 29;
constexpr std::uint16_t KEY_UP = 30;
constexpr std::uint16_t KEY_DOWN = 31;

void delete_key(brisolan* x) {
    brisolan_clr(x);
    brisolan_changed(x);
}

// An arrow key's step on an axis: a quarter of its units per 8 pixels.
std::int64_t arrow_step(std::int32_t zoom) {
    return std::max<std::int64_t>(zoom >> 2, 1);
}

// Kept: the patcher is not marked changed by an arrow key; listeners alone are told.
void arrow_key(brisolan* x, std::int32_t parameter, std::int64_t step) {
    if (parameter < 0) return;
    brisolan_offset(x, parameter, step);
    brisolan_remax(x);
    brisolan_changed(x);
}

void digit_key(brisolan* x, int digit) {
    if (x->typeparam_index < 0) return;
    x->typing = 1;
    x->typedvalue = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::int64_t{x->typedvalue} * 10 + digit, INT32_MAX));
}

void apply_typed(brisolan* x) {
    for (event* e : brisolan_each(x)) {
        if (!e->selected) continue;
        brisolan_eraseit(x, e);
        e->needsdraw = std::uint8_t{1};
        event_param(*e, x->typeparam_index) = x->typedvalue;
    }
    if (x->typeparam_index == PARAM_TIME) brisolan_timeschanged(x);
}

void return_key(brisolan* x) {
    if (x->typeparam_index >= 0) {
        if (x->typeupdate) {
            x->typedvalue = std::max(x->typedvalue, 1);
            brisolan_update(x);
        } else {
            apply_typed(x);
        }
    }
    x->typing = 0;
    x->typedvalue = 0;
}

} // namespace

void brisolan_key(brisolan* x, int code) {
    const auto key = static_cast<std::uint16_t>(code);
    switch (key) {
    case KEY_DELETE: delete_key(x); break;
    case KEY_LEFT: arrow_key(x, PARAM_TIME, -arrow_step(x->xzoom)); break;
    case KEY_RIGHT: arrow_key(x, PARAM_TIME, arrow_step(x->xzoom)); break;
    case KEY_UP: arrow_key(x, x->yparam, arrow_step(x->yzoom)); break;
    case KEY_DOWN: arrow_key(x, x->yparam, -arrow_step(x->yzoom)); break;
    case KEY_RETURN: return_key(x); break;
    default:
        if (key >= '0' && key <= '9') digit_key(x, key - '0');
    }
}
