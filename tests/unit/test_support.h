#pragma once
// A writable argv for the functions that take one, and Qt texts compared as Latin-1.

#include <QString>

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

inline std::string latin1(const QString& text) { return text.toLatin1().toStdString(); }
