#pragma once
// Command lines for the functions that take one, and Qt texts compared as Latin-1.

#include <QString>
#include <QStringList>

#include <string>

// The command line, the program's name first, each argument read as Latin-1.
inline QStringList commandLine(std::initializer_list<std::string> arguments)
{
    QStringList list;
    for (const std::string& argument : arguments)
        list.append(QString::fromLatin1(argument.c_str()));
    return list;
}

inline std::string latin1(const QString& text) { return text.toLatin1().toStdString(); }
