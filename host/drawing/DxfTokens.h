// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>
#include <string_view>

namespace Embedded {

/// A stretch of a file's bytes, the end excluded.
struct ByteRange
{
    int begin = -1;
    int end = -1;

    bool isNull() const { return begin < 0; }
};

constexpr int kComment = 999;

/// One group of a DXF file: a line with its code, and a line with its value.
struct DxfGroup
{
    int code = 0;
    ByteRange bytes; ///< both lines, with their ends
    ByteRange value; ///< the second line without its end
};

/// Walks the groups of a DXF file, or of a part of it, without copying anything; linear.
class DxfTokens
{
public:
    enum class Step {
        Group,   ///< group() is the next one
        End,     ///< there are no more; half a group at the end counts as none
        BadCode, ///< there should be a code, but it is no number; it stands as group()'s value
    };

    /// @param bytes must outlive this
    DxfTokens(const QByteArray &bytes, ByteRange part);

    Step next();

    const DxfGroup &group() const { return m_group; }

    /// The line that the last step began with, counted from 1 at the start of the part; after End
    /// the last line there is.
    int line() const { return m_line; }

    /// Where the walk is, to come back to.
    struct Place
    {
        DxfGroup group;
        int position = 0;
        int line = 0;
    };
    Place place() const { return {m_group, m_position, m_line}; }
    void goTo(const Place &place);

    /// The bytes of @p range.
    std::string_view view(ByteRange range) const;

private:
    ByteRange takeLine();
    const QByteArray &m_bytes;
    const int m_end;
    int m_position;
    int m_line = -1;
    DxfGroup m_group;
};

/// Where one is in the record of a table or an entity: in its own groups, or in those that other
/// applications hang on it.
struct DxfRecordPlace
{
    bool isInAppGroup = false;     ///< between 102 "{NAME" and 102 "}"
    bool isInExtendedData = false; ///< which goes on to the record's end
    std::string_view application;  ///< whose they are, with the brace of a 102

    bool isInExtension() const { return isInAppGroup || isInExtendedData; }

    /// @return whether the group does nothing but tell the place
    bool advance(const DxfGroup &group, std::string_view value);
};

/// Goes along with the groups of entities and tells which of them name layers.
struct DxfEntityPlace
{
    enum class Names {
        Nothing,
        OwnLayer,    ///< that on which the entity lies
        FrozenLayer, ///< one that is frozen in the viewport
    };

    DxfRecordPlace record;
    std::string_view type;
    bool isInRecord = false; ///< not so before the first one, which may have an empty type
    bool hasLayer = false;   ///< in a plain entity another name is one that stands there twice

    bool isViewport() const { return type == "VIEWPORT"; }

    /// Takes the group that @p tokens is at.
    Names advance(const DxfTokens &tokens);
};

/// Whether the class of these entities gives no meaning of its own to the codes of what all entities
/// have: layer, linetype, colour, lineweight. Many programs write such groups behind the class's
/// marker instead of before it, and most read them there, too.
bool isPlainEntity(std::string_view type);

/// @p text without the blanks around it.
std::string_view trimmed(std::string_view text);

/// @p text, blanks aside, as a whole number.
std::optional<int> toInt(std::string_view text);

/// @p text, blanks aside, as a handle; 0, which names nothing, when it is none.
quint64 toHandle(std::string_view text);

} // namespace Embedded
