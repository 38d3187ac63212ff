#include "windows/icons.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPixmap>

#include "windows/texts.h"

namespace velora::windows {

namespace {

QPixmap drawn(QByteArray svg, const QColor& color, int size)
{
    svg.replace("currentColor", color.name().toUtf8());
    QBuffer bytes(&svg);
    QImageReader reader(&bytes, "svg");
    reader.setScaledSize({size, size});
    return QPixmap::fromImage(reader.read());
}

}  // namespace

QIcon icon_of(const std::string& control, const QPalette& palette)
{
    const QString name = shown(control.substr(0, control.find('('))).replace('/', '_');
    QFile file(":/icons/" + name + ".svg");
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray svg = file.readAll();
    QIcon icon;
    for (const int size : {16, 20, 24, 32, 40, 48, 64, 96}) {
        icon.addPixmap(drawn(svg, palette.color(QPalette::ButtonText), size), QIcon::Normal);
        icon.addPixmap(drawn(svg, palette.color(QPalette::Disabled, QPalette::ButtonText), size), QIcon::Disabled);
    }
    return icon;
}

}  // namespace velora::windows
