// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <QGuiApplication>

#include <algorithm>
#include <random>

/// @file
/// Drawings change by groups, records and sections, so that they stay near what readers take.

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t most);

namespace {

/// The line of choices, and from there on two lines for each group.
using Lines = QList<QByteArray>;

int anyGroup(const Lines &lines, std::minstd_rand &random)
{
    return int(random() % unsigned((lines.size() - 1) / 2)) * 2 + 1;
}

bool begins(const Lines &lines, int group, const char *value = nullptr)
{
    return lines.at(group).trimmed() == "0" && (!value || lines.at(group + 1).trimmed() == value);
}

/// The end of a section or record that begins there, or of the group.
int endOf(const Lines &lines, int group)
{
    const char *const next = begins(lines, group, "SECTION") ? "SECTION" : nullptr;
    int end = group + 2;
    while (begins(lines, group) && end + 1 < lines.size() && !begins(lines, end, next))
        end += 2;
    return end;
}

/// A part goes, or one comes from some drawing: in the place of one of its kind, or before it.
void graft(Lines &lines, const Lines &from, std::minstd_rand &random)
{
    int part = anyGroup(from, random);
    const bool isRecord = random() % 2 == 0;
    while (isRecord && part > 1 && !begins(from, part))
        part -= 2;
    int place = anyGroup(lines, random);
    for (int tries = 0; tries < lines.size() && lines.at(place) != from.at(part); tries += 2)
        place = place + 3 < lines.size() ? place + 2 : 1;
    const unsigned way = random() % 4;
    const Lines put = way == 0 ? Lines() : from.mid(part, endOf(from, part) - part);
    lines = lines.mid(0, place) + put + lines.mid(way < 2 ? endOf(lines, place) : place);
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t most, unsigned seed)
{
    static Lines other; // an input from before
    std::minstd_rand random(seed);
    Lines lines = QByteArray(reinterpret_cast<const char *>(data), int(size)).split('\n');
    if (lines.size() < 3 || random() % 16 == 0)
        return LLVMFuzzerMutate(data, size, most);
    if (other.isEmpty() || random() % 16 == 0)
        other = lines;
    const unsigned way = random() % 10;
    if (way < 3) { // other choices, another code or another value
        QByteArray &line = lines[way < 2 ? 0 : int(random() % unsigned(lines.size()))];
        const int length = line.size();
        line.resize(length + 8);
        auto *const text = reinterpret_cast<uint8_t *>(line.data());
        line.resize(int(LLVMFuzzerMutate(text, size_t(length), size_t(line.size()))));
    } else {
        graft(lines, way < 5 ? lines : other, random);
    }
    const QByteArray bytes = lines.join('\n');
    if (size_t(bytes.size()) > most)
        return 0;
    std::copy(bytes.begin(), bytes.end(), data);
    return size_t(bytes.size());
}

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    static auto *const application = new QGuiApplication(*count, *arguments); // texts need fonts
    return application->arguments().isEmpty();
}
