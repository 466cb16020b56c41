// host/desktop/qt_devices.h: which MIDI ports and synth the program uses, as a person chose them, and the menu for it.
// Layer: desktop platform, Qt.
// Owned by the desktop; every window has the menu.
#pragma once

#include <functional>

#include <QSettings>
#include <QString>

#include "host/desktop/desk.h"

class QMenu;

class qt_devices {
public:
    // Both must outlive it.
    qt_devices(desk_program& program, QSettings& settings);

    std::function<void()> changed;              // what text() gives may be another
    std::function<void(const QString&)> failed; // why a choice could not be followed, in one line

    // Opens what was chosen last; at the first start the synth. [main]
    void open();

    // Fills a menu with the inputs, the outputs, the synth, and `panic`, which ends every note. [main]
    void fill_menu(QMenu* menu, std::function<void()> panic);

    // What is in use, for a status line; what is missing, and why, empty when nothing is. [main]
    QString text() const;
    QString trouble() const;

private:
    void fill_ports(QMenu* menu, bool input);
    void choose_port(bool input, const QString& name);
    void set_synth(bool on);
    void set_hears_input(bool on);

    desk_program& program;
    QSettings& kept;
    QString sound_trouble;
    QString port_trouble;
};
