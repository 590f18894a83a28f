// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <OvCustomControl/CMapStringToPtr.h>
#include <OvCustomControl/CMapStringToString.h>
#include <OvCustomControl/CStringArray.h>
#include <OvCustomControl/CStringList.h>

#include <QHash>
#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <random>

namespace {

/// From the head on; the way back must meet the same.
QStringList texts(const CStringList &list)
{
    QStringList forward, backward;
    for (POSITION at = list.GetHeadPosition(); at;)
        forward.append(list.GetNext(at).toQString());
    for (POSITION at = list.GetTailPosition(); at;)
        backward.prepend(list.GetPrev(at).toQString());
    return forward == backward ? forward : QStringList{"forward and backward differ"};
}

QString texts(const CStringArray &array)
{
    QString result;
    for (int index = 0; index < array.GetSize(); ++index)
        result += array[index].toQString();
    return result;
}

} // namespace

class tst_Collections : public QObject
{
    Q_OBJECT

private slots:
    void listMatchesReference();
    void listWhereNothingIs();
    void arrays();
    void mapMatchesReference();
    void mapWalksWhileItChanges();
};

void tst_Collections::listMatchesReference()
{
    CStringList list;
    QStringList reference;
    QString text;
    int index = 0;
    POSITION at = nullptr;
    const std::pair<std::function<void()>, std::function<void()>> operations[] = {
            {[&] { list.AddHead(text); }, [&] { reference.prepend(text); }},
            {[&] { list.AddTail(text); }, [&] { reference.append(text); }},
            {[&] { list.InsertBefore(at, text); }, [&] { reference.insert(index, text); }},
            {[&] { list.InsertAfter(at, text); }, [&] { reference.insert(index + 1, text); }},
            {[&] { list.SetAt(at, text); }, [&] { reference[index] = text; }},
            {[&] { list.RemoveAt(at); }, [&] { reference.removeAt(index); }},
            {[&] { list.RemoveHead(); }, [&] { reference.removeFirst(); }},
            {[&] { list.RemoveTail(); }, [&] { reference.removeLast(); }}};
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        text = QString::number(round % 50);
        index = list.IsEmpty() ? 0 : int(random() % unsigned(list.GetCount()));
        at = list.FindIndex(index);
        const auto &[change, changeReference] = operations[random() % (list.IsEmpty() ? 2 : 8)];
        change();
        changeReference();
        QCOMPARE(texts(list), reference);
        const POSITION found = list.Find(text);
        QCOMPARE(found ? list.GetAt(found).toQString() : QString(),
                 reference.contains(text) ? text : QString());
    }

    for (at = list.GetHeadPosition(); at;) {
        const POSITION current = at;
        if (list.GetNext(at).toQString().toInt() % 2)
            list.RemoveAt(current);
    }
    QCOMPARE(texts(list), reference.filter(QRegularExpression("[02468]$")));
}

void tst_Collections::listWhereNothingIs()
{
    CStringList list;
    QVERIFY(list.RemoveHead().IsEmpty() && list.RemoveTail().IsEmpty() && list.GetHead().IsEmpty()
            && !list.FindIndex(-1));
    const POSITION gone = list.AddTail("a");
    list.AddTail("b");
    list.RemoveAt(gone);
    list.RemoveAt(gone);
    list.SetAt(gone, "c");
    list.SetAt(nullptr, "d");
    QVERIFY(list.GetAt(gone).IsEmpty());
    POSITION at = gone;
    QVERIFY(list.GetNext(at).IsEmpty() && !at && !list.Find("b", gone));
    list.InsertBefore(gone, "head");
    list.InsertAfter(gone, "tail");
    QCOMPARE(texts(list), (QStringList{"head", "b", "tail"}));
    list.RemoveAll();
    QVERIFY(list.IsEmpty() && !list.GetHeadPosition() && !list.GetTailPosition());
}

void tst_Collections::arrays()
{
    CStringArray array;
    QVERIFY(array.Add("a") == 0 && array.Add(L"b") == 1);
    array.InsertAt(1, array[0], 2);
    array.InsertAt(5, array[1]);
    array[4] = "e";
    QCOMPARE(texts(array), "aaabea");
    array.RemoveAt(1, 2);
    array.SetSize(5);
    for (const int bad : {-1, 5, INT_MAX, INT_MIN}) {
        array.SetAt(bad, "x");
        array[bad] = "x";
        QVERIFY(array[bad].IsEmpty());
        array.RemoveAt(bad, 2);
    }
    array.InsertAt(-1, "x");
    array.RemoveAt(3, INT_MAX);
    QCOMPARE(texts(array), "abe");
    array.SetSize(-3);
    QVERIFY(array.IsEmpty());
}

void tst_Collections::mapMatchesReference()
{
    CMapStringToPtr map;
    QHash<QString, void *> reference;
    std::mt19937 random(9);
    for (int round = 0; round < 3000; ++round) {
        const QString key = QString::number(random() % 60);
        void *found = &map;
        QCOMPARE(map.Lookup(key, found), reference.contains(key));
        QCOMPARE(found, reference.value(key, &map));
        if (random() % 3 == 0)
            QCOMPARE(map.RemoveKey(key), reference.remove(key) > 0);
        else
            map.SetAt(key, reference[key] = &reference + round);
        QCOMPARE(map.GetCount(), reference.size());
    }
    CString key;
    void *value = nullptr;
    for (POSITION at = map.GetStartPosition(); at;) {
        map.GetNextAssoc(at, key, value);
        QCOMPARE(reference.take(key.toQString()), value);
    }
    QVERIFY(reference.isEmpty());
}

void tst_Collections::mapWalksWhileItChanges()
{
    CMapStringToString map;
    for (const char *key : {"a", "b", "c", "d"})
        map.SetAt(key, CString(key) + "!");
    const CMapStringToString copy = map;
    QString met;
    CString key, value;
    for (POSITION at = map.GetStartPosition(); at;) {
        map.GetNextAssoc(at, key, value);
        met += value.toQString();
        QVERIFY(map.RemoveKey(key));
        if (key == CString("b"))
            map.RemoveKey("c");
    }
    QCOMPARE(met, "a!b!d!");
    QVERIFY(map.IsEmpty() && !map.GetStartPosition() && copy.GetCount() == 4);

    map["x"] = "1";
    POSITION at = map.GetStartPosition();
    map.RemoveAll();
    map.GetNextAssoc(at, key, value);
    QVERIFY(!at);
    QCOMPARE(key, CString("d"));
}

QTEST_APPLESS_MAIN(tst_Collections)
#include "tst_collections.moc"
