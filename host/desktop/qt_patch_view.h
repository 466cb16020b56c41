// host/desktop/qt_patch_view.h: the picture of a patch: its boxes, which can be pressed, and the cords between them.
// Layer: desktop platform, Qt.
// Called by the patch window. All of it at main level.
#pragma once

#include <functional>
#include <vector>

#include <QWidget>

#include "host/kernel/patcher.h"

// What pressing a box does.
enum class qt_box_press {
    nothing,
    click, // its class takes a person's click, as a message box does
    bang,  // where a patch begins: a bang as if it had come in
    open   // a double click, or a key, opens its window
};

// [main]
qt_box_press qt_press_of(const kel_box& box);

// What stands in a box, as UTF-8: its class and arguments; of a message and a comment the arguments alone. [main]
QString qt_text_of(const kel_box& box);

class qt_patch_view : public QWidget {
public:
    // The patch must outlive the view, and keep its boxes.
    explicit qt_patch_view(host_patcher* patch, QWidget* parent = nullptr);

    // Called before a press goes to a box.
    std::function<void()> before_press;

    // A second line for a box that has something to tell of itself; asked again by refresh(). Unset: no box has.
    void set_state(std::function<QString(host_object*)> state);
    void refresh();

    // The widget of a box by its place in the patch.
    QWidget* box(int place) const { return boxes[static_cast<std::size_t>(place)]; }

    // Does what pressing the box does; nothing while the kernel is inside another call.
    void press(int place);

    // The box whose cords stand out; -1: none.
    void set_lit(int place);

    // How many inlets and outlets are drawn: those that there are; of a broken box those that cords name.
    int inlets(int place) const;
    int outlets(int place) const;

    // What an inlet or outlet is for, where the box's class tells; else empty.
    QString port_help(int place, bool inlet, int port) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void place_boxes();
    bool connected(const kel_patchcord& cord) const;

    host_patcher* patch;
    std::vector<QWidget*> boxes;
    std::function<QString(host_object*)> state;
    int lit = -1;
};
