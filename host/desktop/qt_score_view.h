// host/desktop/qt_score_view.h: the widget that shows an editor window's bitmap and hands it pointer, wheel and keys.
// Layer: desktop platform, Qt. Its loop for held buttons is the toolbox's.
// Called by the editor's windows and by qt_platform.cpp.
//
// Three kinds of pixels meet here: the bitmap's, of which each is scale() by scale() pixels of the display; and Qt's,
// which are as many of the display's as the device pixel ratio says, a fraction perhaps. So bitmap pixels are always
// whole squares on the display, whatever the ratio.
#pragma once

#include <functional>

#include <QWidget>

#include "host/kel.h"

class QEventLoop;

class qt_score_view : public QWidget {
public:
    qt_score_view(host_window* w, QWidget* parent);
    ~qt_score_view() override;

    host_window* shown() const { return shown_window; }
    void forget() { shown_window = nullptr; } // the window was freed

    // Whether its picture was on the display yet.
    bool painted() const { return was_painted; }

    // Called before anything goes to the window that may change its document.
    std::function<void()> before_input;

    // The bitmap may have changed.
    void drawn();

    // A line over the picture at a column of the bitmap, from row top to row bottom; a column below 0: none.
    void set_line(int column, int top, int bottom);

    // Display pixels for one of the bitmap's.
    int scale() const;
    // 0: by the display; else fixed.
    void set_scale(int wanted);
    int wanted_scale() const { return fixed_scale; }

    // Window points, screen points (of the toolbox's screen, which is the view's) and Qt's.
    Point at(QPointF in_widget) const;
    Point pointer() const; // on the screen
    QPoint on_screen(Point global) const;
    Rect screen_bounds() const;
    void move_pointer(Point global);

    // One turn of a loop that follows the held button.
    bool track(Point* where);

    // Sends a key of the editor's own: 8 delete, 28 to 31 the arrows, 13 return.
    void key(int code);
    // The size that shows a bitmap of this size.
    QSize size_for(int width, int height) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;

private:
    double per_pixel() const; // Qt pixels for one of the bitmap's
    void fit();
    void activate();
    Point to_screen(QPointF qt_global) const;
    void hover(Qt::KeyboardModifiers keys);
    void release_drag();
    QRect line_place() const;
    void scroll_by(double h, double v);
    void zoom_by(double notches, bool vertically);

    host_window* shown_window;
    bool was_painted = false;
    int fixed_scale = 0;
    int line_column = -1;
    int line_top = 0;
    int line_bottom = 0;

    // The press that runs.
    bool tracking = false; // a loop of the toolbox's own follows it
    bool pressed = false;
    Qt::MouseButton pressed_button = Qt::NoButton;
    QEventLoop* turn = nullptr;
    QPointF last; // where the pointer was last, in the widget
    bool inside = false;

    // What of a touchpad's scrolling was less than a step.
    double rest_h = 0;
    double rest_v = 0;
    double rest_zoom = 0;
};
