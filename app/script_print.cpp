// app/script_print.cpp: the lines by which the script language shows an instance.
// Layer: program.
#include "app/script_print.h"

#include "app/script_words.h"
#include "view/cursor.h"

namespace {

// The position of an event in the sequence, -1 for none.
int position(const brisolan* x, const event* wanted) {
    int n = 0;
    for (const event* e = x->events; e && wanted; e = e->next, ++n) {
        if (e == wanted) return n;
    }
    return -1;
}

template <class Node> int count(const Node* n) {
    int length = 0;
    for (; n; n = n->next) ++length;
    return length;
}

// " name=value" pieces of a line.
class line_of_fields {
public:
    explicit line_of_fields(std::string start) : line(std::move(start)) {}
    line_of_fields& field(const char* name, std::int64_t value) { return text(name, std::to_string(value)); }
    line_of_fields& text(const char* name, const std::string& value) {
        line += std::string(" ") + name + "=" + value;
        return *this;
    }
    const std::string& whole() const { return line; }

private:
    std::string line;
};

} // namespace

void print_events(const brisolan* x, const print_line& print) {
    for (const event* e = x->events; e; e = e->next) {
        std::string line = "event";
        for (int i = 0; i < NPARAMS; ++i) line += " " + std::to_string(event_param(*e, i));
        if (e->selected) line += " selected";
        print(line);
    }
}

void print_params(const brisolan* x, const print_line& print) {
    for (std::size_t i = 0; i < NPARAMS; ++i) {
        const param_record& p = x->params[i];
        print(line_of_fields("param " + std::to_string(i) + " " + p.name->name)
                  .field("mode", p.mode)
                  .field("min", p.min)
                  .field("max", p.max)
                  .field("default", p.defvalue)
                  .field("legend", p.legvalue)
                  .field("current", p.curvalue)
                  .field("isset", p.isset)
                  .field("interval", p.interval)
                  .field("scale", p.scale)
                  .field("notenames", p.notenames)
                  .field("underline", p.underline)
                  .whole());
    }
}

void print_state(const brisolan* x, const print_line& print) {
    const host_window& w = *x->window;
    print(line_of_fields("state")
              .field("mode", x->mode)
              .field("events", x->nevents)
              .field("current", position(x, x->current))
              .field("lasttime", x->lasttime)
              .field("held", count(x->held))
              .field("pending", count(x->follow_pending))
              .field("mutes", count(x->mutes))
              .field("restoring", x->restoring)
              .field("visible", w.visible)
              .field("editmode", x->editmode)
              .field("nselected", x->nselected)
              .field("firstsel", position(x, x->firstsel))
              .field("dragkind", x->dragkind)
              .field("xzoom", x->xzoom)
              .field("yzoom", x->yzoom)
              .field("lenzoom", x->lenzoom)
              .field("hscroll", w.hscroll_value)
              .field("vscroll", w.vscroll_value)
              .field("hextent", x->hscroll_extent)
              .field("vextent", x->vscroll_extent)
              .field("hmax", w.hscroll_max)
              .field("vmax", w.vscroll_max)
              .field("yparam", x->yparam)
              .field("lenparam", x->lenparam)
              .field("labelparam", x->labelparam)
              .field("cursor", static_cast<std::int16_t>(g_currentcursor))
              .text("time", script_quote(x->track_time))
              .text("value", script_quote(x->track_value))
              .text("over", script_quote(x->track_event))
              .whole());
}

void print_tracks(const brisolan* x, const print_line& print) {
    std::string line = "tracks ";
    for (std::int32_t i = 0; i < x->ntracks; ++i) line += x->trackshown[i] ? '1' : '0';
    print(line);
}
