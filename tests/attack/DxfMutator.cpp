// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <QGuiApplication>

#include <algorithm>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most);

namespace {

using Random = std::minstd_rand;

/// The line of choices, and from there on two lines for each group.
using Lines = QList<QByteArray>;

/// A group of its own, a record, or a section.
enum class Reach { Group, Record, Section };

Lines linesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size)).split('\n');
}

/// @return how many bytes these are, 0 where that are too many
std::size_t write(const Lines &lines, std::uint8_t *data, std::size_t most)
{
    const QByteArray bytes = lines.join('\n');
    const std::size_t size = std::size_t(bytes.size()) > most ? 0 : std::size_t(bytes.size());
    std::copy_n(bytes.begin(), size, data);
    return size;
}

/// The first line of a group.
int anyGroup(const Lines &lines, Random &random)
{
    return int(random() % unsigned((lines.size() - 1) / 2)) * 2 + 1;
}

/// The first line of a part, and that behind it.
std::pair<int, int> anyPart(const Lines &lines, Reach reach, Random &random)
{
    const auto begins = [&lines, reach](int line) {
        return line == 1 || line + 1 >= lines.size() || reach == Reach::Group
               || (lines.at(line).trimmed() == "0"
                   && (reach == Reach::Record || lines.at(line + 1).trimmed() == "SECTION"));
    };
    int begin = anyGroup(lines, random);
    int end = begin + 2;
    while (!begins(begin))
        begin -= 2;
    while (!begins(end))
        end += 2;
    return {begin, end};
}

/// A part goes, or one comes from some drawing: in the place of another, or before it.
void graft(Lines &lines, const Lines &from, Random &random)
{
    const Reach reach = Reach(random() % 9 / 4);
    const auto [from1, from2] = anyPart(from, reach, random);
    const auto [to1, to2] = anyPart(lines, reach, random);
    const unsigned way = random() % 4;
    const Lines part = way == 0 ? Lines() : from.mid(from1, from2 - from1);
    lines = lines.mid(0, to1) + part + lines.mid(way < 2 ? to2 : to1);
}

void mutateBytes(QByteArray &bytes)
{
    constexpr int kMore = 8;
    const int size = bytes.size();
    bytes.resize(size + kMore);
    bytes.resize(int(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(bytes.data()),
                                      std::size_t(size), std::size_t(size + kMore))));
}

/// Other choices, another code, another value, or that of a group with the same code.
void changeLine(Lines &lines, Random &random)
{
    const int group = anyGroup(lines, random);
    const unsigned way = random() % 10;
    if (way < 6) {
        mutateBytes(lines[way < 3 ? 0 : way < 4 ? group : group + 1]);
        return;
    }
    std::vector<int> alike;
    for (int other = 1; other + 1 < lines.size(); other += 2) {
        if (lines.at(other) == lines.at(group))
            alike.push_back(other);
    }
    lines[group + 1] = lines.at(alike[random() % alike.size()] + 1);
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned seed)
{
    Random random(seed);
    Lines lines = linesOf(data, size);
    if (lines.size() < 3 || random() % 16 == 0)
        return LLVMFuzzerMutate(data, size, most);
    if (random() % 3 == 0)
        graft(lines, lines, random);
    else
        changeLine(lines, random);
    return write(lines, data, most);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t *data, std::size_t size,
                                                 const std::uint8_t *other, std::size_t otherSize,
                                                 std::uint8_t *out, std::size_t most, unsigned seed)
{
    Random random(seed);
    Lines lines = linesOf(data, size);
    const Lines from = linesOf(other, otherSize);
    if (lines.size() < 3 || from.size() < 3)
        return 0;
    graft(lines, from, random);
    return write(lines, out, most);
}

extern "C" const char *__asan_default_options()
{
    return "malloc_context_size=3:quarantine_size_mb=16:allocator_may_return_null=1";
}

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    static auto *const application = new QGuiApplication(*count, *arguments); // texts need fonts
    return application->arguments().isEmpty();
}
