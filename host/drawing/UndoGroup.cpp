// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "KcHost.h"

#include "Database.h"

#include <QUndoStack>

namespace KcHost {

QUndoStack *undoStack(KcDbDatabase &drawing)
{
    return &KcDbObjectAccess::journal(drawing).stack();
}

struct UndoGroup::Data
{
    std::weak_ptr<Embedded::UndoJournal> journal;
};

UndoGroup::UndoGroup(KcDbDatabase &drawing, const QString &text, int mergeId)
    : m_data(new Data{KcDbObjectAccess::journal(drawing).weak_from_this()})
{
    KcDbObjectAccess::journal(drawing).begin(text, mergeId);
}

UndoGroup::~UndoGroup()
{
    if (const auto journal = m_data->journal.lock())
        journal->end();
}

} // namespace KcHost
