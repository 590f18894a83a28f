// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSettings>

#include <optional>

class QAction;

namespace OvCc {

/// The column layout of layer tables in the user's settings: what the actions say that show and hide
/// the columns, each in a group that has the action's object name.
class LayoutSettings
{
public:
    /// Where all that are made from now on keep the layout. Without an organisation they do not.
    static void setScope(const QString &organisation, const QString &application);

    LayoutSettings();

    /// Checks @p action as it was saved. One that never was can be checked, and is.
    void restore(QAction &action) const;

    /// Whether @p action was saved before, as one that can be checked.
    bool wasCheckable(const QAction &action) const;

    void save(const QAction &action);

private:
    bool value(const QString &key, bool otherwise) const;

    std::optional<QSettings> m_settings;
};

} // namespace OvCc
