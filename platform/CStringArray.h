#pragma once

#include "CString.h"

#include <QVector>

/// An array of texts. An index that is not there reads as an empty text and writes nothing; a
/// negative size or count is 0.
class OVCC_EXPORT CStringArray
{
public:
    CStringArray();
    CStringArray(const CStringArray &other);
    ~CStringArray();
    CStringArray &operator=(const CStringArray &other);

    int GetCount() const;
    int GetSize() const;
    int GetUpperBound() const;
    bool IsEmpty() const;

    void SetSize(int size);
    void RemoveAll();

    CString GetAt(int index) const;
    void SetAt(int index, const CString &text);
    CString operator[](int index) const;
    CString &operator[](int index);

    /// @return the index of the new text
    int Add(const CString &text);
    /// Makes the array longer where it has to be.
    void InsertAt(int index, const CString &text, int count = 1);
    void RemoveAt(int index, int count = 1);

private:
    QVector<CString> m_texts;
    CString m_nowhere; ///< what may be written to where there is no element
};
