// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "NaturalOrder.h"

#include <algorithm>

namespace OvCc {

namespace {

constexpr QChar zero = u'0';

bool isDigit(QChar character)
{
    return character >= zero && character <= QChar(u'9');
}

} // namespace

/// Before the digits of a number stands how many they are: the longer one is the greater. What is the
/// same then, is told apart by the name itself.
QString naturalKey(const QString &name)
{
    const QChar *at = std::find_if(name.cbegin(), name.cend(), isDigit);
    if (at == name.cend())
        return name;
    QString key;
    key.reserve(2 * int(name.size()) + 8);
    key.append(name.constData(), int(at - name.cbegin()));
    while (at != name.cend()) {
        if (!isDigit(*at)) {
            key.append(*at++);
            continue;
        }
        at = std::find_if(at, name.cend(), [](QChar each) { return each != zero; });
        const QChar *end = std::find_if_not(at, name.cend(), isDigit);
        key.append(zero).append(QChar(ushort(qMin<qptrdiff>(end - at, 0xffff))));
        key.append(at, int(end - at));
        at = end;
    }
    return key.append(QChar(u'\0')).append(name);
}

} // namespace OvCc
