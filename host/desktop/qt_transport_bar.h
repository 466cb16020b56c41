// host/desktop/qt_transport_bar.h: the bar with the transport's buttons, the position and the speed.
// Layer: desktop platform, Qt.
// Called by the editor's window.
#pragma once

#include <functional>

#include <QToolBar>

#include "host/desktop/desk.h"

class QAction;
class QDoubleSpinBox;
class QLabel;
class QSlider;

// The buttons' actions, which menus show as well; each owner connects what they do.
struct qt_transport_actions {
    QAction* to_start = nullptr;
    QAction* play = nullptr;
    QAction* stop = nullptr;
    QAction* record = nullptr;
    QAction* follow = nullptr;
    QAction* step = nullptr;
};

// Minutes, seconds and thousandths: 1:02.345. [main]
QString qt_clock_text(std::int64_t ms);

class qt_transport_bar : public QToolBar {
public:
    qt_transport_bar(const qt_transport_actions& actions, QWidget* parent);

    // Brings everything up to the state.
    void show_state(const desk_transport& t);

    std::function<void(std::int64_t)> position_moved; // by the slider
    std::function<void(double)> speed_chosen;

protected:
    void changeEvent(QEvent* event) override;

private:
    void draw_icons();

    qt_transport_actions on;
    QLabel* clock;
    QSlider* place;
    QDoubleSpinBox* speed;
    bool showing = false; // what changes now was not done by a person
};
