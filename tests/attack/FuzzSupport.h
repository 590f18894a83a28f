// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cstdio>
#include <cstdlib>
#include <cstring>
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

/// A folder that no disk lies under, where there is one.
inline QString quickFolder()
{
    return QFileInfo("/dev/shm").isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath();
}

/// With the arguments `--corpus FOLDER` writes there what @p make makes of 400 seeds, and ends.
inline int writeCorpus(int argc, char **argv, QByteArray (*make)(QRandomGenerator &random))
{
    for (quint32 seed = 0; argc > 2 && std::strcmp(argv[1], "--corpus") == 0; ++seed) {
        if (seed == 400)
            std::exit(0);
        QRandomGenerator random(seed);
        QFile file(QDir(argv[2]).filePath(QString::number(seed)));
        require(file.open(QFile::WriteOnly) && file.write(make(random)) >= 0, "a file is written");
    }
    return 0;
}
