#pragma once
// A writable argv for the functions that take the process arguments, and
// readable failure output for Qt texts.

#include <QString>

#include <ostream>
#include <string>
#include <vector>

struct Argv {
    Argv(std::initializer_list<std::string> arguments) : texts(arguments)
    {
        for (std::string& text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
    }
    int argc() const { return int(texts.size()); }
    char** argv() { return pointers.data(); }

    std::vector<std::string> texts;
    std::vector<char*> pointers;
};

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
