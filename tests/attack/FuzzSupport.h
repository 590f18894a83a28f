// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

/// Ends the program where something does not hold, so that libFuzzer keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "It does not hold: %s.\n", what);
        std::abort();
    }
}

/// As many elements as promised and not one more, so that the sanitizer sees each step beyond.
template <typename Text>
auto exactly(const Text &text, size_t size)
{
    auto copy = std::make_unique<std::decay_t<decltype(*text.begin())>[]>(size);
    std::copy_n(text.begin(), size, copy.get());
    return copy;
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    require(file.open(QFile::WriteOnly) && file.write(content) == content.size(), "it is there");
}

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// What is tried with an input whose first byte is the choice; FuzzInput.cpp calls it.
void tryInput(size_t choice, const QByteArray &input);
