// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace Tessa {

/// @file
/// What dxflib does not tell of a record of a DXF file.

/// The numbers that texts of a file stand for. What is no number is 0, what is too large the largest
/// one: no number is infinite.
int dxfInt(const std::string &text);
double dxfReal(const std::string &text);

/// A record, which begins with the group 0.
struct DxfRecord
{
    int number = -1; ///< how many begin before it
    std::string kind;
    std::string name;    ///< of the section, in its first group, or of a dimension's block
    std::string layer;   ///< the first that is named, as the host has it
    double rotation = 0; ///< degrees
    bool isHidden = false;
    bool isInPaperSpace = false;
    int flags = 0;
    std::array<int, 4> counts{}; ///< of vertices in a mesh, or the corners of a face
    double height = 0;
    std::vector<double> dashes;
    std::vector<std::pair<int, std::string>> groups; ///< all, of kinds that are read from them

    bool hasGroups = false;        ///< beside comments
    bool isInAppGroup = false;     ///< between 102 "{NAME" and 102 "}"
    bool isInExtendedData = false; ///< of other applications, to the record's end

    bool isVisible() const { return !isHidden && !isInPaperSpace; }

    void addGroup(int code, const std::string &value);
};

} // namespace Tessa
