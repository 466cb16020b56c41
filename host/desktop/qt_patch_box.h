// host/desktop/qt_patch_box.h: one box of a patch, as a widget: a button where pressing it does something.
// Layer: desktop platform, Qt.
// Called by the patch's picture alone.
#pragma once

#include <QAbstractButton>
#include <QString>

#include "host/desktop/qt_patch_view.h"

// How a box looks and how large it is. What it shows is told once; a second line may change.
struct qt_box_look {
    enum class kind { plain, message, comment, score, broken };

    kind drawn_as = kind::plain;
    QString text;
    QString state; // a second line
    bool has_state_line = false;
    int inlets = 0;
    int outlets = 0;
    int width = 0; // pixels, in which a comment is broken into lines; 0: as wide as its text

    QSize size(const QFont& font) const;
    void paint(QPainter& to, const QWidget& in, bool down) const;
};

// Where an inlet or outlet lies in a box, pixels from its left: its middle. [main]
double qt_port_middle(int port);

// A widget for the box, a child of the view. [main]
class qt_patch_box : public QAbstractButton {
public:
    qt_patch_box(qt_patch_view& in, int place, const qt_box_look& look, qt_box_press pressed);

    void set_state(const QString& text);
    void fit();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    qt_patch_view& view;
    int place;
    qt_box_look look;
    qt_box_press does;
};
