#include "PaletteFiles.h"

#include "model/PaletteExchange.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace PaletteFiles {

ExchangeResult read(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return ExchangeResult::refused(u"the file does not exist"_s);
    if (info.isDir())
        return ExchangeResult::refused(u"it is a folder"_s);
    // A fifo or a device could block or never end.
    if (!info.isFile())
        return ExchangeResult::refused(u"it is not a regular file"_s);
    if (info.size() > PaletteExchange::maxFileSize)
        return ExchangeResult::refused(PaletteExchange::tooLarge());
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ExchangeResult::refused(file.errorString());
    // One byte more than allowed tells a file that grew since.
    const QByteArray data = file.read(PaletteExchange::maxFileSize + 1);
    if (file.error() != QFileDevice::NoError)
        return ExchangeResult::refused(file.errorString());
    return PaletteExchange::read(info.fileName(), data);
}

QString write(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        return file.errorString();
    return {};
}

} // namespace PaletteFiles
