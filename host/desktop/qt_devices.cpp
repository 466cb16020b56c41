// host/desktop/qt_devices.cpp: which MIDI ports and synth the program uses, and the menu for it.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_devices.h"

#include <string>
#include <utility>

#include <QActionGroup>
#include <QMenu>
#include <QStringList>

#include "host/desktop/qt_menu_items.h"
#include "host/desktop/qt_platform.h"

namespace {

const QString INPUT = QStringLiteral("midi/input");
const QString OUTPUT = QStringLiteral("midi/output");
const QString HEAR = QStringLiteral("midi/hear");
const QString SYNTH = QStringLiteral("midi/synth");

} // namespace

qt_devices::qt_devices(desk_program& p, QSettings& settings) : program(p), kept(settings) {}

void qt_devices::open() {
    const QString input = kept.value(INPUT).toString();
    const QString output = kept.value(OUTPUT).toString();
    const bool synth = kept.value(SYNTH, output.isEmpty()).toBool();
    program.set_hears_input(kept.value(HEAR, false).toBool());
    const qt_in_kernel now;
    port_trouble = QString::fromStdString(program.why_no_midi());
    const auto reopen = [this](const QString& name, std::string why) {
        if (!name.isEmpty() && !why.empty()) port_trouble = QString::fromStdString(why);
    };
    if (!input.isEmpty()) reopen(input, program.choose_input(input.toStdString()));
    if (!output.isEmpty()) reopen(output, program.choose_output(output.toStdString()));
    if (synth) sound_trouble = QString::fromStdString(program.set_synth(true));
    changed();
    if (const QString why = trouble(); !why.isEmpty()) failed(why);
}

QString qt_devices::text() const {
    QStringList parts;
    for (const desk_port& p : program.inputs()) {
        if (p.chosen) parts.append(QStringLiteral("In: ") + QString::fromStdString(p.name));
    }
    for (const desk_port& p : program.outputs()) {
        if (p.chosen) parts.append(QStringLiteral("Out: ") + QString::fromStdString(p.name));
    }
    if (program.synth()) parts.append(QStringLiteral("Synth"));
    if (!sound_trouble.isEmpty()) parts.append(QStringLiteral("No sound"));
    if (!port_trouble.isEmpty()) parts.append(QStringLiteral("No MIDI"));
    return parts.isEmpty() ? QStringLiteral("No MIDI port, no synth") : parts.join(QStringLiteral("  ·  "));
}

QString qt_devices::trouble() const {
    QStringList lines;
    if (!sound_trouble.isEmpty()) lines.append(QStringLiteral("No sound: ") + sound_trouble);
    if (!port_trouble.isEmpty())
        lines.append(QStringLiteral("No MIDI: ") +
                     QString(port_trouble).remove(QStringLiteral("this machine has no MIDI: ")));
    return lines.join(QStringLiteral("; "));
}

void qt_devices::choose_port(bool input, const QString& name) {
    const std::string wanted = name.toStdString();
    const qt_in_kernel now;
    const std::string why = input ? program.choose_input(wanted) : program.choose_output(wanted);
    kept.setValue(input ? INPUT : OUTPUT, name);
    if (!why.empty()) failed(QString::fromStdString(why));
    changed();
}

void qt_devices::set_synth(bool on) {
    const qt_in_kernel now;
    sound_trouble = QString::fromStdString(program.set_synth(on));
    kept.setValue(SYNTH, on);
    changed();
}

void qt_devices::set_hears_input(bool on) {
    program.set_hears_input(on);
    kept.setValue(HEAR, on);
}

void qt_devices::fill_ports(QMenu* menu, bool input) {
    menu->clear();
    auto* const group = new QActionGroup(menu);
    bool any = false;
    const auto entry = [&](const QString& name_shown, const QString& name, bool chosen) {
        QAction* const a = menu->addAction(QString(name_shown).replace('&', "&&"));
        a->setCheckable(true);
        a->setChecked(chosen);
        group->addAction(a);
        QObject::connect(a, &QAction::triggered, menu, [this, input, name] { choose_port(input, name); });
        any = any || chosen;
    };
    for (const desk_port& p : input ? program.inputs() : program.outputs())
        entry(QString::fromStdString(p.name), QString::fromStdString(p.name), p.chosen);
    if (menu->isEmpty()) {
        const std::string why = program.why_no_midi();
        menu->addAction(why.empty() ? QStringLiteral("No ports") : QString::fromStdString(why))
            ->setEnabled(false);
    }
    menu->addSeparator();
    entry(QStringLiteral("None"), QString(), !any);
}

void qt_devices::fill_menu(QMenu* menu, std::function<void()> panic) {
    for (const bool input : {true, false}) {
        QMenu* const ports = menu->addMenu(input ? QStringLiteral("&Input") : QStringLiteral("&Output"));
        QObject::connect(ports, &QMenu::aboutToShow, ports,
                         [this, ports, input] { fill_ports(ports, input); });
    }
    qt_add_switch(
        menu, QStringLiteral("&Synth"), [this] { return program.synth(); },
        [this](bool wanted) { set_synth(wanted); });
    qt_add_switch(
        menu, QStringLiteral("&Hear the input"), [this] { return program.hears_input(); },
        [this](bool wanted) { set_hears_input(wanted); });
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("&Panic: end every note"), QKeySequence(QStringLiteral("Ctrl+.")),
                std::move(panic));
}
