// transport/record.cpp: building a sequence from what arrives at the inlets.
// Layer: transport. Called by messages at the left inlet.
#include "transport/record.h"

#include <algorithm>

#include "core/heldnotes.h"
#include "core/messages.h"
#include "core/saturated.h"
#include "core/sequence.h"

namespace {

void begin_recording(brisolan* x) {
    brisolan_clear(x);
    x->serial = 0;
    x->mode = MODE_RECORD;
    x->lasttime = 0;
}

event* append_current_values(brisolan* x, std::int32_t delta) {
    std::array<std::int32_t, NPARAMS> values{};
    for (std::size_t i = PARAM_PITCH; i < NPARAMS; ++i) values[i] = x->params[i].curvalue;
    return brisolan_append(x, delta, values, false);
}

// Time goes on, and the first held note of the pitch ends now.
void record_noteoff(brisolan* x, std::int32_t delta) {
    x->lasttime = saturated(std::int64_t{x->lasttime.get()} + delta);
    const std::int32_t pitch = x->params[PARAM_PITCH].curvalue;
    event* e = brisolan_unhold(x, [pitch](const event& held) { return held.pitch == pitch; });
    if (!e) return;
    e->dur = std::max(saturated(std::int64_t{x->lasttime.get()} - e->time), 0);
    x->reshaped += 1;
    x->redraw.changed = std::uint8_t{1};
    brisolan_redraw(x);
}

} // namespace

void brisolan_record(brisolan* x) {
    begin_recording(x);
}

void brisolan_restore(brisolan* x) {
    // The stop inside "clear" lowers the flag again, so that the saved events that follow are taken.
    x->restoring = std::uint8_t{1};
    begin_recording(x);
}

void brisolan_recordinput(brisolan* x, std::int32_t delta) {
    if (x->restoring) return;
    delta = std::max(delta, 0);
    if (x->params[PARAM_DUR].isset) {
        append_current_values(x, delta);
    } else if (x->params[PARAM_VEL].curvalue != 0) {
        if (event* e = append_current_values(x, delta)) brisolan_hold(x, e);
    } else {
        record_noteoff(x, delta);
    }
}
