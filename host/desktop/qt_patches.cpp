// host/desktop/qt_patches.cpp: the patches that are open by themselves.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_patches.h"

#include <algorithm>
#include <utility>

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>

#include "host/desktop/qt_patch_window.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_window.h"
#include "host/kernel/windows.h"

namespace {

void to_front(QWidget* window) {
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

qt_patches::qt_patches(desk_program& program, qt_asks asks) : behind(program), desktop(std::move(asks)) {}

qt_patches::~qt_patches() {
    while (!all.empty()) delete all.back()->window; // which ends it
}

qt_patch_window* qt_patches::open(const QString& file, QString& why) {
    const std::string name = QFile::encodeName(file).toStdString();
    for (const std::unique_ptr<opened>& o : all) {
        if (o->patch->file() != name) continue;
        to_front(o->window);
        return o->window;
    }
    auto fresh = std::make_unique<opened>();
    opened* const o = fresh.get();
    all.push_back(std::move(fresh)); // a patch may show a score's window as it is loaded
    std::string reason;
    {
        const qt_in_kernel now;
        o->patch = behind.open_patch(name, reason);
    }
    if (!o->patch) {
        why = QString::fromStdString(reason);
        end(o);
        return nullptr;
    }
    qt_patch_hooks hooks;
    hooks.state = [this](host_object* x) { return behind.state_of(x); };
    hooks.file = [o] { return o->patch->file(); };
    hooks.save = [o](const std::string& to) { return o->patch->save(to); };
    hooks.closed = [this, o] { end(o); };
    hooks.desktop = desktop;
    o->window = new qt_patch_window(o->patch->patcher(), QFileInfo(file).fileName(), std::move(hooks));
    o->window->show();
    for (host_object* x : kel_patcher_objects(o->patch->patcher())) {
        for (host_window* w : kel_windows()) {
            if (w->owner == x && w->visible) window_shown(w);
        }
    }
    return o->window;
}

// The windows of its scores go before what they show.
void qt_patches::end(opened* which) {
    const qt_in_kernel now;
    which->scores.clear();
    which->patch.reset();
    std::erase_if(all, [which](const std::unique_ptr<opened>& o) { return o.get() == which; });
}

bool qt_patches::close_all() {
    std::vector<QPointer<qt_patch_window>> windows;
    for (const std::unique_ptr<opened>& o : all) windows.emplace_back(o->window);
    return std::all_of(windows.begin(), windows.end(),
                       [](const QPointer<qt_patch_window>& w) { return !w || w->close(); });
}

void qt_patches::window_shown(host_window* w) {
    for (const std::unique_ptr<opened>& o : all) {
        if (!o->patch) continue;
        const std::vector<host_object*>& objects = kel_patcher_objects(o->patch->patcher());
        if (std::find(objects.begin(), objects.end(), w->owner) == objects.end()) continue;
        for (const std::unique_ptr<qt_score_window>& s : o->scores) {
            if (s->shown() == w) return to_front(s.get());
        }
        qt_score_hooks hooks;
        hooks.desktop = desktop;
        hooks.save = [o = o.get()] {
            if (o->window) o->window->save();
        };
        hooks.tool = [this, w](int tool) { behind.set_tool(w->owner, tool); };
        hooks.zoom = [this, w](desk_zoom way) { behind.zoom(w->owner, way); };
        o->scores.push_back(std::make_unique<qt_score_window>(w, std::move(hooks)));
        return to_front(o->scores.back().get());
    }
}

void qt_patches::window_hidden(host_window* w) {
    for (const std::unique_ptr<opened>& o : all) {
        for (const std::unique_ptr<qt_score_window>& s : o->scores) {
            if (s->shown() == w) s->hide();
        }
    }
}

void qt_patches::tell_all(const QString& text) {
    for (const std::unique_ptr<opened>& o : all) {
        if (o->window) o->window->say(text);
    }
}
