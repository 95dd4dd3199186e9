#include "sysinfo.h"

#include "messagesink.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace kelfractionint::sysinfo {

QString unavailablemessage()
{
    return QStringLiteral("System Information Is Unavailable At This Time");
}

QString dwordhextext(quint32 value)
{
    QString text = QStringLiteral("&h");
    for (int shift = 24; shift >= 0; shift -= 8)
        text += QString::number((value >> shift) & 0xFFu, 16).toUpper();
    return text;
}

QString dwordtotext(quint32 value)
{
    // Bytes lose their leading zeros before the text is read back, so 0x0000010A reads as &h1A;
    // hosts rely on that reading.
    const quint64 reading = dwordhextext(value).mid(2).toULongLong(nullptr, 16);
    if (reading <= 0xFFFFu)
        return QString::number(static_cast<qint16>(reading));
    return QString::number(static_cast<qint32>(static_cast<quint32>(reading)));
}

QStringList candidateprograms()
{
    return {QStringLiteral("kinfocenter"), QStringLiteral("gnome-system-monitor"), QStringLiteral("hardinfo"),
            QStringLiteral("hardinfo2"), QStringLiteral("xfce4-taskmanager")};
}

#ifdef Q_OS_WIN
namespace {

// Reads a string or double-word value under HKEY_LOCAL_MACHINE; opening with full access fails
// for users without write rights, which counts as a missing value.
bool getkeyvalue(const char *key, const char *name, QString &result)
{
    result.clear();
    HKEY handle = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, KEY_ALL_ACCESS, &handle) != ERROR_SUCCESS)
        return false;
    char buffer[1024] = {};
    DWORD size = sizeof buffer;
    DWORD type = 0;
    const LONG status = RegQueryValueExA(handle, name, nullptr, &type, reinterpret_cast<BYTE *>(buffer), &size);
    RegCloseKey(handle);
    if (status != ERROR_SUCCESS)
        return false;
    if (type == REG_SZ) {
        result = QString::fromLocal8Bit(buffer, qstrnlen(buffer, size));
    } else if (type == REG_DWORD) {
        quint32 value = 0;
        memcpy(&value, buffer, sizeof value);
        result = dwordtotext(value);
    }
    return true;
}

} // namespace

QString findprogram()
{
    QString path;
    if (getkeyvalue("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", path))
        return path;
    if (getkeyvalue("SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", path)) {
        path += QStringLiteral("\\MSINFO32.EXE");
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}
#else
QString findprogram()
{
    for (const QString &name : candidateprograms()) {
        const QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return {};
}
#endif

bool startsysinfo()
{
    const QString program = findprogram();
    if (!program.isEmpty() && QProcess::startDetached(program, {}))
        return true;
    modfracglobal::showmessage(unavailablemessage().toStdString());
    return false;
}

} // namespace kelfractionint::sysinfo
