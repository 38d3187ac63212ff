#include "windows/ui_file.h"

#include <QBoxLayout>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QTreeView>
#include <QTreeWidget>
#include <QXmlStreamReader>
#include <stdexcept>

namespace velora::windows {

namespace {

template <class Widget>
QWidget* make_widget(QWidget* parent)
{
    return new Widget(parent);
}

/// A letter that is underlined is drawn apart from its neighbour, which takes a hair more than the toolkit measures.
class Label final : public QLabel {
public:
    using QLabel::QLabel;
    [[nodiscard]] QSize sizeHint() const override { return QLabel::sizeHint() + kHair; }
    [[nodiscard]] QSize minimumSizeHint() const override { return QLabel::minimumSizeHint() + kHair; }

private:
    static constexpr QSize kHair{2, 0};
};

const QHash<QString, QWidget* (*)(QWidget*)>& known_widgets()
{
    static const QHash<QString, QWidget* (*)(QWidget*)> all{
        {"QWidget", make_widget<QWidget>},
        {"QGroupBox", make_widget<QGroupBox>},
        {"QLabel", make_widget<Label>},
        {"QLineEdit", make_widget<QLineEdit>},
        {"QPushButton", make_widget<QPushButton>},
        {"QCheckBox", make_widget<QCheckBox>},
        {"QRadioButton", make_widget<QRadioButton>},
        {"QComboBox", make_widget<QComboBox>},
        {"QListView", make_widget<QListView>},
        {"QTreeView", make_widget<QTreeView>},
        {"QTreeWidget", make_widget<QTreeWidget>},
        {"QPlainTextEdit", make_widget<QPlainTextEdit>},
        {"QSplitter", make_widget<QSplitter>},
        {"QCalendarWidget", make_widget<QCalendarWidget>},
    };
    return all;
}

class UiReader {
public:
    using Make = std::function<QWidget*(const QString&, QWidget*)>;
    UiReader(QFile& file, QMainWindow& window, const Make& make) : xml_(&file), window_(window), make_(make) {}

    void read()
    {
        while (xml_.readNextStartElement()) {
            if (xml_.name() == u"ui") continue;  // into it
            if (xml_.name() == u"widget") {
                read_into(window_);
            } else {
                xml_.skipCurrentElement();
            }
        }
        if (xml_.hasError()) fail(xml_.errorString());
        for (const auto& [label, name] : buddies_) {
            auto* buddy = window_.findChild<QWidget*>(name);
            if (buddy == nullptr) fail("no widget " + name);
            label->setBuddy(buddy);
        }
    }

private:
    [[noreturn]] void fail(const QString& what)
    {
        throw std::logic_error(
            QString("%1:%2: %3").arg(window_.objectName()).arg(xml_.lineNumber()).arg(what).toStdString());
    }

    /// What stands in a widget's element.
    void read_into(QWidget& widget)
    {
        widget.setObjectName(xml_.attributes().value("name").toString());
        while (xml_.readNextStartElement()) {
            if (xml_.name() == u"property") {
                read_property(widget);
            } else if (xml_.name() == u"layout") {
                read_layout(widget, &widget);
            } else if (xml_.name() == u"widget") {
                add_child(widget);
            } else {
                xml_.skipCurrentElement();
            }
        }
    }

    QWidget* read_widget(QWidget* parent)
    {
        const QString name = xml_.attributes().value("class").toString();
        QWidget* widget = make_(name, parent);
        if (widget == nullptr) {
            const auto known = known_widgets().find(name);
            if (known == known_widgets().end()) fail("no class " + name);
            widget = (*known)(parent);
        }
        read_into(*widget);
        return widget;
    }

    /// A widget without a layout: what a splitter or the window itself holds.
    void add_child(QWidget& owner)
    {
        QWidget* child = read_widget(&owner);
        if (auto* splitter = qobject_cast<QSplitter*>(&owner)) splitter->addWidget(child);
        if (&owner == &window_) window_.setCentralWidget(child);
    }

    /// @param holder  the widget whose layout it is; null for one within another
    QLayout* read_layout(QWidget& owner, QWidget* holder)
    {
        const auto attributes = xml_.attributes();
        const QString name = attributes.value("class").toString();
        QLayout* layout = nullptr;
        if (name == "QGridLayout") layout = new QGridLayout(holder);
        if (name == "QHBoxLayout") layout = new QHBoxLayout(holder);
        if (name == "QVBoxLayout") layout = new QVBoxLayout(holder);
        if (layout == nullptr) fail("no class " + name);
        if (holder == nullptr) layout->setContentsMargins(0, 0, 0, 0);
        while (xml_.readNextStartElement()) {
            if (xml_.name() == u"item") {
                read_item(*layout, owner);
            } else if (xml_.name() == u"property") {
                read_property(*layout);
            } else {
                xml_.skipCurrentElement();
            }
        }
        set_stretches(*layout, attributes);
        return layout;
    }

    static void set_stretches(QLayout& layout, const QXmlStreamAttributes& attributes)
    {
        const auto each = [&](const char* attribute, auto set) {
            const QString list = attributes.value(attribute).toString();
            if (list.isEmpty()) return;
            const auto parts = list.split(',');
            for (int at = 0; at < parts.size(); ++at) set(at, parts[at].toInt());
        };
        if (auto* box = qobject_cast<QBoxLayout*>(&layout)) {
            each("stretch", [&](int at, int stretch) { box->setStretch(at, stretch); });
        }
        if (auto* grid = qobject_cast<QGridLayout*>(&layout)) {
            each("rowstretch", [&](int at, int stretch) { grid->setRowStretch(at, stretch); });
            each("columnstretch", [&](int at, int stretch) { grid->setColumnStretch(at, stretch); });
        }
    }

    void read_item(QLayout& layout, QWidget& owner)
    {
        const auto number = [attributes = xml_.attributes()](const char* name, int otherwise) {
            return attributes.hasAttribute(name) ? attributes.value(name).toInt() : otherwise;
        };
        const int row = number("row", 0), column = number("column", 0);
        const int rows = number("rowspan", 1), columns = number("colspan", 1);
        auto* grid = qobject_cast<QGridLayout*>(&layout);
        auto* box = qobject_cast<QBoxLayout*>(&layout);
        while (xml_.readNextStartElement()) {
            if (xml_.name() == u"widget") {
                QWidget* widget = read_widget(&owner);
                if (grid) grid->addWidget(widget, row, column, rows, columns);
                if (box) box->addWidget(widget);
            } else if (xml_.name() == u"layout") {
                QLayout* inner = read_layout(owner, nullptr);
                if (grid) grid->addLayout(inner, row, column, rows, columns);
                if (box) box->addLayout(inner);
            } else if (xml_.name() == u"spacer") {
                auto* space = read_spacer();
                if (grid) grid->addItem(space, row, column, rows, columns);
                if (box) box->addItem(space);
            } else {
                xml_.skipCurrentElement();
            }
        }
    }

    QSpacerItem* read_spacer()
    {
        bool across = true;
        while (xml_.readNextStartElement()) {
            const bool turns = xml_.attributes().value("name") == u"orientation";
            const QString value = read_value();
            if (turns) across = value.endsWith("Horizontal");
        }
        return across ? new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum)
                      : new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding);
    }

    /// The text of a property's value, up to the property's end.
    QString read_value()
    {
        QString value;
        while (xml_.readNextStartElement()) value = xml_.readElementText(QXmlStreamReader::IncludeChildElements);
        return value.trimmed();
    }

    void read_property(QObject& object)
    {
        const QByteArray name = xml_.attributes().value("name").toUtf8();
        const QString value = read_value();
        if (name == "buddy") {
            buddies_.append({qobject_cast<QLabel*>(&object), value});
            return;
        }
        if (auto* layout = qobject_cast<QLayout*>(&object); layout != nullptr && name == "margin") {
            layout->setContentsMargins(value.toInt(), value.toInt(), value.toInt(), value.toInt());
            return;
        }
        const int index = object.metaObject()->indexOfProperty(name);
        if (index < 0) fail("no property " + name);
        const QMetaProperty property = object.metaObject()->property(index);
        if (property.isEnumType()) {
            const int number = property.enumerator().keysToValue(value.toUtf8());
            if (number < 0) fail("no value " + value);
            property.write(&object, number);
        } else if (property.metaType().id() == QMetaType::Bool) {
            property.write(&object, value == "true");
        } else {
            property.write(&object, value.toInt());
        }
    }

    QXmlStreamReader xml_;
    QMainWindow& window_;
    const Make& make_;
    QList<std::pair<QLabel*, QString>> buddies_;
};

}  // namespace

void load_ui(const QString& path, QMainWindow& window, const UiReader::Make& make)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw std::logic_error("no layout " + path.toStdString());
    UiReader(file, window, make).read();
}

}  // namespace velora::windows
