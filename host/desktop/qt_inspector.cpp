// host/desktop/qt_inspector.cpp: the dialog that describes an object's eight parameters.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_inspector.h"

#include <climits>
#include <vector>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "host/desktop/descriptions.h"
#include "host/desktop/qt_platform.h"

namespace {

constexpr const char* COLUMNS[] = {"Name",    "Shown as", "Least",        "Most",
                                   "Default", "Grid",     "Per 8 pixels", "Note names"};
constexpr const char* ROLES[] = {"None", "Time axis", "Vertical axis", "Label", "Bar length"};

// What is wrong stands out.
constexpr QColor TROUBLE(0xB0, 0x10, 0x10);
constexpr QColor TROUBLE_ON_DARK(0xFF, 0x80, 0x80);

// The fields of one parameter.
struct fields {
    QLineEdit* name;
    QComboBox* role;
    QSpinBox* min;
    QSpinBox* max;
    QSpinBox* value;
    QSpinBox* interval;
    QSpinBox* scale;
    QCheckBox* note_names;

    parameter_description described() const {
        return {name->text().toStdString(),
                role->currentIndex(),
                min->value(),
                max->value(),
                value->value(),
                interval->value(),
                scale->value(),
                note_names->isChecked()};
    }
};

class inspector : public QDialog {
public:
    inspector(QWidget* parent, host_object* object, std::function<void()> before)
        : QDialog(parent), x(object), before_change(std::move(before)) {
        setWindowTitle(QStringLiteral("Parameters"));
        auto* const grid = new QGridLayout;
        for (int c = 0; c < static_cast<int>(std::size(COLUMNS)); ++c) {
            auto* const head = new QLabel(QString::fromLatin1(COLUMNS[c]), this);
            QFont bold = head->font();
            bold.setBold(true);
            head->setFont(bold);
            grid->addWidget(head, 0, c);
        }
        const described_object told = ask_descriptions(x);
        known = told.parameters;
        for (int i = 0; i < static_cast<int>(known.size()); ++i) add_row(grid, i);
        auto* const buttons = new QDialogButtonBox(
            QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
        connect(buttons, &QDialogButtonBox::accepted, this, [this] {
            if (apply()) accept();
        });
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, [this] { apply(); });
        trouble = new QLabel(this);
        QFont bold = trouble->font();
        bold.setBold(true);
        trouble->setFont(bold);
        QPalette red = trouble->palette();
        red.setColor(QPalette::WindowText,
                     palette().color(QPalette::Window).lightness() < 128 ? TROUBLE_ON_DARK : TROUBLE);
        trouble->setPalette(red);
        auto* const all = new QVBoxLayout(this);
        all->addLayout(grid);
        all->addWidget(trouble);
        all->addWidget(buttons);
        const auto chosen = static_cast<std::size_t>(told.chosen);
        if (chosen < rows.size()) rows[chosen].name->setFocus();
    }

private:
    QSpinBox* number(QGridLayout* grid, int row, int column, int value, int least = INT_MIN) {
        auto* const box = new QSpinBox(this);
        box->setRange(least, INT_MAX);
        box->setButtonSymbols(QAbstractSpinBox::NoButtons);
        box->setValue(value);
        box->setAccessibleName(accessible(row, column));
        box->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral(" -2147483648 ")));
        grid->addWidget(box, row, column);
        return box;
    }

    QString accessible(int row, int column) const {
        return QString::fromStdString(known[static_cast<std::size_t>(row - 1)].name) + QStringLiteral(": ") +
               QString::fromLatin1(COLUMNS[column]);
    }

    void add_row(QGridLayout* grid, int index) {
        const parameter_description& d = known[static_cast<std::size_t>(index)];
        const int row = index + 1;
        fields f{};
        f.name = new QLineEdit(QString::fromStdString(d.name), this);
        f.name->setAccessibleName(accessible(row, 0));
        grid->addWidget(f.name, row, 0);
        f.role = new QComboBox(this);
        for (const char* role : ROLES) f.role->addItem(QString::fromLatin1(role));
        f.role->setCurrentIndex(d.role);
        f.role->setAccessibleName(accessible(row, 1));
        grid->addWidget(f.role, row, 1);
        f.min = number(grid, row, 2, d.min);
        f.max = number(grid, row, 3, d.max);
        f.value = number(grid, row, 4, d.value);
        f.interval = number(grid, row, 5, d.interval, 1);
        f.scale = number(grid, row, 6, d.scale, 1);
        f.note_names = new QCheckBox(this);
        f.note_names->setChecked(d.note_names);
        f.note_names->setAccessibleName(accessible(row, 7));
        grid->addWidget(f.note_names, row, 7, Qt::AlignCenter);
        rows.push_back(f);
    }

    // What a range must be, told where it is not.
    bool is_sound(const parameter_description& d) {
        QString why;
        if (d.name.empty()) why = QStringLiteral("A parameter needs a name.");
        if (d.min > d.max) why = QStringLiteral("%1: the least value is above the most.");
        if (why.isEmpty() && (d.value < d.min || d.value > d.max))
            why = QStringLiteral("%1: the default is outside of the range.");
        trouble->setText(why.contains('%') ? why.arg(QString::fromStdString(d.name)) : why);
        return why.isEmpty();
    }

    bool apply() {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const parameter_description wanted = rows[i].described();
            if (wanted != known[i] && !is_sound(wanted)) return false;
        }
        before_change();
        const qt_in_kernel now;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const parameter_description wanted = rows[i].described();
            if (wanted == known[i]) continue;
            send_description(x, static_cast<int>(i), wanted);
        }
        // A role that one parameter takes, another loses.
        known = ask_descriptions(x).parameters;
        for (std::size_t i = 0; i < rows.size() && i < known.size(); ++i)
            rows[i].role->setCurrentIndex(known[i].role);
        return true;
    }

    host_object* x;
    std::function<void()> before_change;
    std::vector<parameter_description> known;
    std::vector<fields> rows;
    QLabel* trouble = nullptr;
};

} // namespace

void qt_inspect(QWidget* window, host_object* x, const std::function<void()>& before_change) {
    inspector dialog(window, x, before_change);
    dialog.exec();
}
