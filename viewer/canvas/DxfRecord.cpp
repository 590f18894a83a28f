// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfRecord.h"

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace Tessa {

namespace {

constexpr int comment = 999;
constexpr const char *kindsReadFromGroups[] = {"DIMSTYLE", "HATCH", "LEADER"};

} // namespace

int dxfInt(const std::string &text)
{
    using Limits = std::numeric_limits<int>;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return int(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

double dxfReal(const std::string &text)
{
    const double value = QByteArray::fromStdString(text).trimmed().toDouble();
    constexpr double largest = std::numeric_limits<double>::max();
    return qIsNaN(value) ? 0 : qBound(-largest, value, largest);
}

void DxfRecord::addGroup(int code, const std::string &value)
{
    if (std::find(std::begin(kindsReadFromGroups), std::end(kindsReadFromGroups), kind)
        != std::end(kindsReadFromGroups))
        groups.emplace_back(code, value);
    switch (code) {
    case 2:
        if (kind != "SECTION" || !hasGroups)
            name = value;
        break;
    case 8:
        if (layer.empty() && !isInAppGroup && !isInExtendedData)
            layer = value;
        break;
    case 30:
        height = dxfReal(value);
        break;
    case 49:
        dashes.push_back(dxfReal(value));
        break;
    case 50:
        rotation = dxfReal(value);
        break;
    case 60:
        isHidden = dxfInt(value) != 0;
        break;
    case 67:
        isInPaperSpace = dxfInt(value) != 0;
        break;
    case 70:
        flags = dxfInt(value);
        break;
    case 71:
    case 72:
    case 73:
    case 74:
        counts[std::size_t(code) - 71] = dxfInt(value);
        break;
    case 102:
        isInAppGroup = value.compare(0, 1, "{") == 0;
        break;
    case 1001:
        isInExtendedData = true;
        break;
    default:
        break;
    }
    hasGroups |= code != comment;
}

} // namespace Tessa
