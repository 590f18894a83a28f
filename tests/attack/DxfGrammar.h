// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <cstdint>
#include <iterator>

/// @file
/// What the fuzz programs for drawings share. An input is a script of up to 255 bytes behind one that
/// tells their number, and a DXF file. Inputs change so that they stay near what readers take.

namespace Attack {

constexpr const char *kNames[] = {"0",           "Walls",        "walls",  "T\u00fcr",
                                  "\u03a9-1",    "\u65e5\u672c", "A B \\", "Neu",
                                  "Stra\u00dfe", "\U0001f3e0"};
constexpr const char *kTexts[] = {"",    "Text", " %%c20 \\U+00E9", "{\\H2x;a\\Pb \u00e9}",
                                  "^ x", "}"};

/// Choices by the bytes of a script, and at random behind its end.
class Choices
{
public:
    explicit Choices(std::uint32_t seed, const QByteArray &script = {})
        : m_random(seed * 2654435761U + 1)
        , m_script(script)
    {
    }

    bool isAtEnd() const { return m_next >= m_script.size(); }

    /// A number from 0 on; those that a script chooses are below 256.
    int below(int end)
    {
        m_random = m_random * 1664525U + 1013904223U;
        return int((isAtEnd() ? m_random >> 8 : std::uint8_t(m_script.at(m_next++)))
                   % std::uint32_t(end));
    }

    template <class Table>
    auto of(const Table &table)
    {
        return *(std::begin(table) + below(int(std::size(table))));
    }
    template <class T>
    T of(std::initializer_list<T> table)
    {
        return *(table.begin() + below(int(table.size())));
    }

private:
    std::uint32_t m_random;
    const QByteArray m_script;
    int m_next = 0;
};

struct Input
{
    QByteArray script;
    QByteArray drawing;

    static Input from(const std::uint8_t *data, std::size_t size);
};

/// A drawing of some version, encoding and layout, with some of all that drawings have.
QByteArray randomDrawing(std::uint32_t seed);

/// Ends the program where an invariant does not hold.
inline void require(bool holds, const char *invariant)
{
    if (!holds)
        qFatal("broken: %s", invariant);
}

/// Requires that what happens while this lives takes no more than goes with the size of the input.
class Effort
{
public:
    explicit Effort(std::size_t size);
    ~Effort();
    Q_DISABLE_COPY(Effort)

private:
    const double m_size;
    const long m_begin;
    const std::size_t m_allocated;
};

} // namespace Attack
