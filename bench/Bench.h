// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

class KcDbDatabase;

/// One piece of work at one size: the time that this library takes, and the time of the plain
/// baseline, measured in the same run. In milliseconds, where the work names no other unit.
struct Times
{
    double ours;
    double baseline;
};

/// A piece of work that is measured at several sizes.
struct Work
{
    QString name;
    QList<int> sizes;
    std::function<Times(int n)> measure;
    const char *unit = "ms";
};

/// The works of each family.
QList<Work> dataWorks();
QList<Work> compactWorks();
QList<Work> tableWorks();
QList<Work> pickerWorks();

/// The median time of @p work over several runs, in milliseconds. @p prepare runs before each of
/// them and does not count.
double medianTime(
        const std::function<void()> &work, const std::function<void()> &prepare = [] {});

/// The path of a DXF file with N layers of various states and colours, made once per size.
QString drawingFile(int n);

/// A picture as the layer widgets show them.
constexpr char layerPicture[] = ":/core_ccvon.bmp";

/// Opens that file as the working drawing for as long as the result lives.
std::shared_ptr<KcDbDatabase> openDrawing(int n);

/// Keeps a result that nobody looks at from being optimised away.
template <class T>
void keep(const T &value)
{
    asm volatile("" : : "g"(&value) : "memory");
}
