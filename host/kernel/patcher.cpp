// host/kernel/patcher.cpp: the patcher record, and "#N", which makes objects from saved lines.
// Layer: kernel.
#include "host/kernel/patcher.h"

#include <algorithm>

#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/objects.h"
#include "host/kernel/patcher_start.h"

struct host_patcher::contents {
    std::vector<host_object*> objects; // in the order made
    kel_patch patch;
    bool changed = false;
};

namespace {

host_patcher* building = nullptr;
std::vector<host_patcher*> patchers; // all there are
host_class* patcher_class = nullptr;
host_class* maker_class = nullptr;

// The receiver "#N": its message's selector is the class of the object to make.
struct maker : host_object {};
maker* the_maker = nullptr;

void maker_anything(maker*, symbol* selector, std::int32_t argc, const atom* argv) {
    kel_make(selector, {argv, static_cast<std::size_t>(argc)});
}

maker* maker_new() {
    return host_object_new<maker>(maker_class);
}
void maker_free(maker*) {}

host_patcher* patcher_new() {
    host_patcher* p = host_object_new<host_patcher>(patcher_class);
    p->inside = new host_patcher::contents;
    patchers.push_back(p);
    return p;
}

void patcher_free(host_patcher* p) {
    std::vector<host_object*>& objects = p->inside->objects;
    while (!objects.empty()) {
        host_object* x = objects.back();
        objects.pop_back();
        host_object_free(x);
    }
    if (building == p) kel_patcher_build(nullptr);
    std::erase(patchers, p);
    delete p->inside;
}

bool is_somewhere(const host_object* x) {
    return std::any_of(patchers.begin(), patchers.end(), [x](const host_patcher* p) {
        const std::vector<host_object*>& objects = p->inside->objects;
        return std::find(objects.begin(), objects.end(), x) != objects.end();
    });
}

} // namespace

void kel_patcher_start() {
    patcher_class = host_class_setup("patcher", host_typed_lifecycle<patcher_new, patcher_free>());
    maker_class = host_class_setup("#N", host_typed_lifecycle<maker_new, maker_free>());
    host_class_addanything(maker_class, host_typed<maker_anything, ARG_LIST>());
    the_maker = maker_new();
    host_symbol("#N")->thing = static_cast<host_object*>(the_maker);
}

void kel_patcher_end() {
    kel_patcher_build(nullptr);
    host_object_free(the_maker);
    the_maker = nullptr;
}

host_patcher* kel_patcher_new() {
    return patcher_new();
}
void kel_patcher_free(host_patcher* p) {
    host_object_free(p);
}

void kel_patcher_build(host_patcher* p) {
    building = p;
    host_symbol("#P")->thing = p;
}

host_patcher* kel_patcher_building() {
    return building;
}

host_class* kel_boxclass(const char* name) {
    host_class* const c = kel_class(name);
    return c == patcher_class || c == maker_class ? nullptr : c;
}

host_object* kel_make(symbol* class_name, std::span<const atom> arguments) {
    host_class* c = kel_boxclass(class_name->name);
    if (!c) {
        host_error("host: no class named \"%s\"", class_name->name);
        return nullptr;
    }
    host_object* x = kel_object_new(c, arguments);
    if (!x || !building) return x;
    // A constructor may hand back an object that is there already, in whatever patcher.
    if (is_somewhere(x)) return x;
    building->inside->objects.push_back(x);
    kel_box box;
    box.object = x;
    box.made_by = {atom(host_symbol("#N")), atom(class_name)};
    box.made_by.insert(box.made_by.end(), arguments.begin(), arguments.end());
    building->inside->patch.boxes.push_back(std::move(box));
    return x;
}

void kel_patcher_remove(host_patcher* p, host_object* x) {
    if (!std::erase(p->inside->objects, x)) return;
    std::vector<kel_box>& boxes = p->inside->patch.boxes;
    const auto box =
        std::find_if(boxes.begin(), boxes.end(), [x](const kel_box& b) { return b.object == x; });
    const auto place = static_cast<std::int32_t>(box - boxes.begin());
    boxes.erase(box);
    std::vector<kel_patchcord>& cords = p->inside->patch.cords;
    std::erase_if(cords, [place](const kel_patchcord& c) { return c.from == place || c.to == place; });
    for (kel_patchcord& c : cords) {
        c.from -= c.from > place;
        c.to -= c.to > place;
    }
    host_object_free(x);
}

const std::vector<host_object*>& kel_patcher_objects(const host_patcher* p) {
    return p->inside->objects;
}

kel_patch& kel_patcher_patch(const host_patcher* p) {
    return p->inside->patch;
}

const char* kel_patcher_connect(host_patcher* p, const kel_patchcord& cord) {
    kel_patch& patch = p->inside->patch;
    if (std::find(patch.cords.begin(), patch.cords.end(), cord) != patch.cords.end()) return nullptr;
    patch.cords.push_back(cord);
    const auto there = [&patch](std::int32_t place) {
        return place >= 0 && static_cast<std::size_t>(place) < patch.boxes.size();
    };
    if (!there(cord.from) || !there(cord.to)) return "a cord to a box that is not there";
    host_object* const from = patch.boxes[static_cast<std::size_t>(cord.from)].object;
    host_object* const to = patch.boxes[static_cast<std::size_t>(cord.to)].object;
    if (!from || !to) return "a cord to a broken box";
    if (!kel_outlet(from, cord.outlet)) return "a cord from an outlet that is not there";
    if (!kel_has_inlet(to, cord.inlet)) return "a cord to an inlet that is not there";
    kel_connect(from, cord.outlet, to, cord.inlet);
    return nullptr;
}

host_object* kel_patcher_find(const host_patcher* p, const char* class_name) {
    const host_class* const c = kel_class(class_name);
    const std::vector<host_object*>& objects = p->inside->objects;
    const auto found =
        std::find_if(objects.begin(), objects.end(), [c](const host_object* x) { return x->cls == c; });
    return found == objects.end() ? nullptr : *found;
}

bool kel_patcher_changed(const host_patcher* p) {
    return p->inside->changed;
}
void kel_patcher_setchanged(host_patcher* p, bool changed) {
    p->inside->changed = changed;
}

void host_patcher_dirty(host_patcher* p) {
    p->inside->changed = true;
    const host_platform& platform = kel_platform();
    if (platform.patcher_dirty) platform.patcher_dirty(platform.user, p);
}
