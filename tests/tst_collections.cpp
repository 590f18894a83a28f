#include <OvCustomControl/CMapStringToPtr.h>
#include <OvCustomControl/CMapStringToString.h>
#include <OvCustomControl/CStringArray.h>
#include <OvCustomControl/CStringList.h>

#include <QTest>

#include <list>
#include <map>
#include <random>

namespace {

QStringList texts(const CStringList &list, bool fromTail = false)
{
    QStringList result;
    for (POSITION at = fromTail ? list.GetTailPosition() : list.GetHeadPosition(); at;)
        result.append((fromTail ? list.GetPrev(at) : list.GetNext(at)).toQString());
    return result;
}

QStringList texts(const CStringArray &array)
{
    QStringList result;
    for (int index = 0; index < array.GetSize(); ++index)
        result.append(array[index].toQString());
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
    std::list<QString> reference;
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const QString text = QString::number(round % 50);
        const int index = list.IsEmpty() ? 0 : int(random() % unsigned(list.GetCount()));
        const POSITION at = list.FindIndex(index);
        const auto place = std::next(reference.begin(), index);
        switch (random() % 8) {
        case 0:
            list.AddHead(text);
            reference.push_front(text);
            break;
        case 1:
            list.AddTail(text);
            reference.push_back(text);
            break;
        case 2:
            list.InsertBefore(at, text);
            reference.insert(at ? place : reference.begin(), text);
            break;
        case 3:
            list.InsertAfter(at, text);
            reference.insert(at ? std::next(place) : reference.end(), text);
            break;
        case 4:
            list.RemoveAt(at);
            if (at)
                reference.erase(place);
            break;
        case 5:
            if (at) {
                QCOMPARE(list.RemoveHead().toQString(), reference.front());
                reference.pop_front();
            }
            break;
        case 7:
            if (at) {
                QCOMPARE(list.RemoveTail().toQString(), reference.back());
                reference.pop_back();
            }
            break;
        case 6:
            list.SetAt(at, text);
            if (at)
                *place = text;
            break;
        }
        const QStringList expected(reference.begin(), reference.end());
        QCOMPARE(texts(list), expected);
        QStringList backward = texts(list, true);
        std::reverse(backward.begin(), backward.end());
        QCOMPARE(backward, expected);
        const POSITION found = list.Find(text);
        QCOMPARE(found ? list.GetAt(found).toQString() : QString(),
                 expected.contains(text) ? text : QString());
    }

    for (POSITION at = list.GetHeadPosition(); at;) {
        const POSITION current = at;
        if (list.GetNext(at).toQString().toInt() % 2)
            list.RemoveAt(current);
    }
    reference.remove_if([](const QString &text) { return text.toInt() % 2; });
    QCOMPARE(texts(list), QStringList(reference.begin(), reference.end()));
    list.RemoveAll();
    QVERIFY(list.IsEmpty() && !list.GetHeadPosition() && !list.GetTailPosition());
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
    QVERIFY(list.GetNext(at).IsEmpty());
    QVERIFY(!at && !list.Find("b", gone));
    list.InsertBefore(gone, "head");
    list.InsertAfter(gone, "tail");
    QCOMPARE(texts(list), (QStringList{"head", "b", "tail"}));
    QVERIFY(CString(static_cast<const wchar_t *>(nullptr)).IsEmpty());
}

void tst_Collections::arrays()
{
    CStringArray array;
    QCOMPARE(array.GetUpperBound(), -1);
    QVERIFY(array.Add("a") == 0 && array.Add(L"b") == 1);
    array.InsertAt(1, array[0], 2);
    array.InsertAt(5, array[1]);
    array[4] = "e";
    QCOMPARE(texts(array), (QStringList{"a", "a", "a", "b", "e", "a"}));
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
    QCOMPARE(texts(array), (QStringList{"a", "b", "e"}));
    array.SetSize(-3);
    QVERIFY(array.IsEmpty());
}

void tst_Collections::mapMatchesReference()
{
    CMapStringToPtr map;
    std::map<QString, void *> reference;
    std::mt19937 random(9);
    for (int round = 0; round < 3000; ++round) {
        const QString key = QString::number(random() % 60);
        void *const value = &reference + round;
        if (random() % 3 == 0) {
            QCOMPARE(map.RemoveKey(key), reference.erase(key) > 0);
        } else {
            map[key] = value;
            reference[key] = value;
        }
        QCOMPARE(map.GetCount(), int(reference.size()));
        void *found = &map;
        QCOMPARE(map.Lookup(key, found), reference.count(key) > 0);
        QCOMPARE(found, reference.count(key) ? reference[key] : static_cast<void *>(&map));
    }
    CString key;
    void *value = nullptr;
    for (POSITION at = map.GetStartPosition(); at;) {
        map.GetNextAssoc(at, key, value);
        QCOMPARE(reference.at(key.toQString()), value);
        reference.erase(key.toQString());
    }
    QVERIFY(reference.empty());
}

void tst_Collections::mapWalksWhileItChanges()
{
    CMapStringToString map;
    for (const char *key : {"a", "b", "c", "d"})
        map.SetAt(key, CString(key) + "!");
    QStringList met;
    CString key, value;
    for (POSITION at = map.GetStartPosition(); at;) {
        map.GetNextAssoc(at, key, value);
        met.append(value.toQString());
        QVERIFY(map.RemoveKey(key));
        if (key == CString("b"))
            map.RemoveKey("c");
    }
    QCOMPARE(met, (QStringList{"a!", "b!", "d!"}));
    QVERIFY(map.IsEmpty() && !map.GetStartPosition());

    map["x"] = "1";
    POSITION at = map.GetStartPosition();
    map.RemoveAll();
    map.GetNextAssoc(at, key, value);
    QVERIFY(!at);
    QCOMPARE(key, CString("d"));
}

QTEST_APPLESS_MAIN(tst_Collections)
#include "tst_collections.moc"
