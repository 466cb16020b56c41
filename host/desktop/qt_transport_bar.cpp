// host/desktop/qt_transport_bar.cpp: the bar with the transport's buttons, the position and the speed.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_transport_bar.h"

#include <algorithm>

#include <QAction>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QFontDatabase>
#include <QLabel>
#include <QSlider>

#include "host/desktop/qt_icons.h"

namespace {

constexpr double SLOWEST = 0.25;
constexpr double FASTEST = 4.0;

} // namespace

QString qt_clock_text(std::int64_t ms) {
    return QStringLiteral("%1:%2.%3")
        .arg(ms / 60'000)
        .arg(ms / 1000 % 60, 2, 10, QLatin1Char('0'))
        .arg(ms % 1000, 3, 10, QLatin1Char('0'));
}

qt_transport_bar::qt_transport_bar(const qt_transport_actions& actions, QWidget* parent)
    : QToolBar(QStringLiteral("Transport"), parent), on(actions), clock(new QLabel(this)),
      place(new QSlider(Qt::Horizontal, this)), speed(new QDoubleSpinBox(this)) {
    setObjectName(QStringLiteral("transport"));
    setMovable(false);
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (QAction* a : {on.to_start, on.play, on.stop, on.record, on.follow, on.step}) addAction(a);
    addSeparator();

    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(font().pointSizeF() * 1.25);
    fixed.setBold(true);
    clock->setFont(fixed);
    clock->setAccessibleName(QStringLiteral("Position"));
    clock->setToolTip(QStringLiteral("Position: minutes, seconds, thousandths"));
    clock->setMinimumWidth(QFontMetrics(fixed).horizontalAdvance(QStringLiteral(" 00:00.000 ")));
    clock->setAlignment(Qt::AlignCenter);
    addWidget(clock);

    place->setAccessibleName(QStringLiteral("Position in the score"));
    place->setToolTip(QStringLiteral("Position in the score"));
    place->setSingleStep(1000);
    place->setPageStep(10'000);
    place->setMinimumWidth(120);
    connect(place, &QSlider::valueChanged, this, [this](int value) {
        if (!showing && position_moved) position_moved(value);
    });
    addWidget(place);

    auto* const label = new QLabel(QStringLiteral("  Speed "), this);
    label->setBuddy(speed);
    addWidget(label);
    speed->setAccessibleName(QStringLiteral("Speed"));
    speed->setRange(SLOWEST, FASTEST);
    speed->setSingleStep(0.05);
    speed->setDecimals(2);
    speed->setSuffix(QStringLiteral(" ×"));
    speed->setValue(1);
    speed->setToolTip(QStringLiteral("How fast the score is played, 1 being as written"));
    connect(speed, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        if (!showing && speed_chosen) speed_chosen(value);
    });
    addWidget(speed);
    draw_icons();
}

void qt_transport_bar::draw_icons() {
    on.to_start->setIcon(qt_make_icon(qt_icon::to_start, palette()));
    on.play->setIcon(qt_make_icon(qt_icon::play, palette()));
    on.stop->setIcon(qt_make_icon(qt_icon::stop, palette()));
    on.record->setIcon(qt_make_icon(qt_icon::record, palette()));
    on.follow->setIcon(qt_make_icon(qt_icon::follow, palette()));
    on.step->setIcon(qt_make_icon(qt_icon::step, palette()));
}

void qt_transport_bar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) draw_icons();
    QToolBar::changeEvent(event);
}

void qt_transport_bar::show_state(const desk_transport& t) {
    showing = true;
    clock->setText(qt_clock_text(t.position));
    const int end = static_cast<int>(std::clamp<std::int64_t>(std::max(t.length, t.position), 0, INT32_MAX));
    if (place->maximum() != end) place->setMaximum(end);
    if (!place->isSliderDown()) place->setValue(static_cast<int>(std::min<std::int64_t>(t.position, end)));
    place->setEnabled(t.mode == desk_mode::idle || t.mode == desk_mode::playing);
    if (speed->value() != t.speed && !speed->hasFocus()) speed->setValue(t.speed);
    const bool idle = t.mode == desk_mode::idle;
    on.play->setChecked(t.mode == desk_mode::playing);
    on.record->setChecked(t.mode == desk_mode::recording);
    on.follow->setChecked(t.mode == desk_mode::following);
    on.stop->setEnabled(!idle);
    showing = false;
}
