// host/desktop/qt_patch_view.cpp: the picture of a patch.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_patch_view.h"

#include <algorithm>
#include <cmath>

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include "host/desktop/qt_patch_box.h"
#include "host/desktop/qt_platform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/objects.h"
#include "host/kernel/textform.h"

namespace {

constexpr int MARGIN = 24;       // right of and below the last box
constexpr double LEAST_BOW = 12; // how far a cord goes straight down before it turns, pixels
constexpr double LARGEST_BOW = 60;
constexpr int MOST_PORTS = 64; // that a broken box is drawn with, whatever its cords say

std::string class_of(const kel_box& box) {
    return box.made_by.size() > 1 && box.made_by[1].type == A_SYM ? box.made_by[1].s->name : "";
}

qt_box_look::kind kind_of(const kel_box& box) {
    if (!box.object) return qt_box_look::kind::broken;
    if (class_of(box) == "comment") return qt_box_look::kind::comment;
    switch (qt_press_of(box)) {
    case qt_box_press::open: return qt_box_look::kind::score;
    case qt_box_press::click: return qt_box_look::kind::message;
    default: return qt_box_look::kind::plain;
    }
}

} // namespace

qt_box_press qt_press_of(const kel_box& box) {
    if (!box.object) return qt_box_press::nothing;
    // A class with a window takes clicks in that; on its box it wants two.
    if (kel_has_private(box.object, "dblclick")) return qt_box_press::open;
    if (kel_has_private(box.object, "click")) return qt_box_press::click;
    const std::string name = class_of(box);
    return name == "loadbang" || name == "receive" ? qt_box_press::bang : qt_box_press::nothing;
}

QString qt_text_of(const kel_box& box) {
    const std::string name = class_of(box);
    const std::size_t skipped = box.object && (name == "message" || name == "comment") ? 2 : 1;
    std::string text;
    for (std::size_t i = skipped; i < box.made_by.size(); ++i) {
        if (!text.empty()) text += ' ';
        const atom& a = box.made_by[i];
        // As a person would write it: quotes belong to the file.
        if (a.type == A_SYM)
            text += a.s->name;
        else
            kel_format_atoms({&a, 1}, &text);
    }
    return QString::fromStdString(text).simplified();
}

qt_patch_view::qt_patch_view(host_patcher* p, QWidget* parent) : QWidget(parent), patch(p) {
    setAccessibleName(QStringLiteral("Patch"));
    const std::vector<kel_box>& all = kel_patcher_patch(patch).boxes;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const int at = static_cast<int>(i);
        qt_box_look look;
        look.drawn_as = kind_of(all[i]);
        look.text = qt_text_of(all[i]);
        look.inlets = inlets(at);
        look.outlets = outlets(at);
        look.width = all[i].width;
        look.has_state_line = look.drawn_as == qt_box_look::kind::score;
        boxes.push_back(new qt_patch_box(*this, at, look, qt_press_of(all[i])));
    }
    place_boxes();
}

void qt_patch_view::place_boxes() {
    const std::vector<kel_box>& all = kel_patcher_patch(patch).boxes;
    // A patch may place boxes left of or above its window; everything moves so that all can be reached.
    int left = 0;
    int top = 0;
    for (const kel_box& b : all) {
        left = std::min(left, b.left);
        top = std::min(top, b.top);
    }
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        static_cast<qt_patch_box*>(boxes[i])->fit();
        boxes[i]->move(all[i].left - left, all[i].top - top);
    }
    resize(sizeHint());
    updateGeometry();
    update();
}

QSize qt_patch_view::sizeHint() const {
    QSize size(0, 0);
    for (const QWidget* b : boxes)
        size = size.expandedTo({b->x() + b->width() + MARGIN, b->y() + b->height() + MARGIN});
    return size;
}

void qt_patch_view::set_state(std::function<QString(host_object*)> tells) {
    state = std::move(tells);
    refresh();
}

void qt_patch_view::refresh() {
    if (!state) return;
    const std::vector<kel_box>& all = kel_patcher_patch(patch).boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (qt_press_of(all[i]) == qt_box_press::open)
            static_cast<qt_patch_box*>(boxes[i])->set_state(state(all[i].object));
    }
}

void qt_patch_view::set_lit(int place) {
    if (lit == place) return;
    lit = place;
    update();
}

void qt_patch_view::press(int place) {
    if (qt_kernel_busy()) return;
    const kel_box& b = kel_patcher_patch(patch).boxes[static_cast<std::size_t>(place)];
    const qt_box_press does = qt_press_of(b);
    if (does == qt_box_press::nothing) return;
    if (before_press) before_press();
    const qt_in_kernel now;
    switch (does) {
    case qt_box_press::click: kel_private<"click">(b.object, Point{0, 0}, 0); break;
    case qt_box_press::open: kel_private<"dblclick">(b.object); break;
    default: kel_send(b.object, host_symbol("bang"), {}); break;
    }
}

int qt_patch_view::inlets(int place) const {
    const kel_patch& all = kel_patcher_patch(patch);
    const host_object* const x = all.boxes[static_cast<std::size_t>(place)].object;
    int n = 0;
    if (x) {
        if (kel_boxclass("comment") && x->cls == kel_boxclass("comment")) return 0;
        while (kel_has_inlet(x, n)) ++n;
        return n;
    }
    for (const kel_patchcord& c : all.cords) {
        if (c.to == place) n = std::max(n, std::min(c.inlet, MOST_PORTS - 1) + 1);
    }
    return n;
}

int qt_patch_view::outlets(int place) const {
    const kel_patch& all = kel_patcher_patch(patch);
    const host_object* const x = all.boxes[static_cast<std::size_t>(place)].object;
    if (x) return kel_outlets(x);
    int n = 0;
    for (const kel_patchcord& c : all.cords) {
        if (c.from == place) n = std::max(n, std::min(c.outlet, MOST_PORTS - 1) + 1);
    }
    return n;
}

QString qt_patch_view::port_help(int place, bool inlet, int port) const {
    host_object* const x = kel_patcher_patch(patch).boxes[static_cast<std::size_t>(place)].object;
    if (!x || qt_kernel_busy() || !kel_has_private(x, "assist")) return {};
    char text[HOST_ASSIST_SIZE] = "";
    const qt_in_kernel now;
    kel_private<"assist">(x, inlet, port, static_cast<char*>(text));
    return QString::fromUtf8(text);
}

bool qt_patch_view::connected(const kel_patchcord& cord) const {
    const std::vector<kel_box>& all = kel_patcher_patch(patch).boxes;
    const host_object* const from = all[static_cast<std::size_t>(cord.from)].object;
    const host_object* const to = all[static_cast<std::size_t>(cord.to)].object;
    if (!from || !to || cord.outlet < 0 || cord.outlet >= kel_outlets(from)) return false;
    const std::span<const kel_cord> cords = kel_cords(from, cord.outlet);
    return std::any_of(cords.begin(), cords.end(),
                       [&](const kel_cord& c) { return c.to == to && c.inlet == cord.inlet; });
}

void qt_patch_view::paintEvent(QPaintEvent*) {
    QPainter to(this);
    const QColor base = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    to.fillRect(rect(), base);
    to.setRenderHint(QPainter::Antialiasing);
    QColor quiet = ink;
    quiet.setAlphaF(0.45F);
    const auto draw = [&](const kel_patchcord& c, bool stands_out) {
        const QWidget* const from = boxes[static_cast<std::size_t>(c.from)];
        const QWidget* const into = boxes[static_cast<std::size_t>(c.to)];
        const QPointF a(from->x() + qt_port_middle(c.outlet), from->y() + from->height());
        const QPointF b(into->x() + qt_port_middle(c.inlet), into->y());
        const double bow = std::clamp(std::hypot(b.x() - a.x(), b.y() - a.y()) / 3, LEAST_BOW, LARGEST_BOW);
        QPainterPath path(a);
        path.cubicTo(a + QPointF(0, bow), b - QPointF(0, bow), b);
        QPen pen(stands_out ? palette().color(QPalette::Highlight) : quiet, stands_out ? 2.5 : 1.5);
        if (!connected(c)) pen.setStyle(Qt::DashLine);
        to.strokePath(path, pen);
    };
    const auto known = [this](int place) { return place >= 0 && place < static_cast<int>(boxes.size()); };
    for (const bool standing_out : {false, true}) {
        for (const kel_patchcord& c : kel_patcher_patch(patch).cords) {
            const bool stands_out = c.from == lit || c.to == lit;
            if (stands_out != standing_out || !known(c.from) || !known(c.to)) continue;
            if (c.outlet >= 0 && c.inlet >= 0 && c.outlet < MOST_PORTS && c.inlet < MOST_PORTS)
                draw(c, stands_out);
        }
    }
}

void qt_patch_view::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange && !boxes.empty()) place_boxes();
    QWidget::changeEvent(event);
}
