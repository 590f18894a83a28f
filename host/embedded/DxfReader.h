#pragma once

#include "Drawing.h"

#include <QStringList>

#include <optional>
#include <string_view>
#include <unordered_set>

namespace Embedded {

/// Makes a drawing of the bytes of an ASCII DXF file, in one walk over them; linear.
class DxfReader
{
public:
    /// @param fileName only for the sentences
    DxfReader(const QString &fileName, const QByteArray &bytes);

    /// Reads the file, once.
    /// @return the drawing; nothing when error() says why there is none
    std::optional<Drawing> read();

    /// One sentence with file, line and reason.
    const QString &error() const { return m_error; }

    /// One sentence with file, line and reason for each oddity that was survived.
    const QStringList &warnings() const { return m_warnings; }

private:
    /// What a record refers to, to be looked up when the whole file is known.
    struct Reference
    {
        DxfGroup group;
        int line = 0;
    };

    /// An oddity in the record that is being read, for when the layer's name is known.
    struct Oddity
    {
        int line;
        QString text;
    };

    struct LayerRecord
    {
        Layer layer;
        DxfRecordPlace place;
        Reference linetype;
        int line = 0; ///< 0 while no layer is being read
        int describingTexts = 0;
        std::vector<Oddity> oddities;
    };

    /// A section that speaks of layers before their names can be read.
    struct LateSection
    {
        std::string_view name;
        DxfTokens::Place place;
        int records;
    };

    struct ViewportRecord
    {
        Viewport viewport;
        std::vector<DxfGroup> frozenHandles;
        std::vector<DxfGroup> frozenNames;
    };

    bool checkSignature();
    bool checkFirstGroup();
    void readSections();
    void readSection();
    void readContent();
    void skipContent();
    void readHeader();
    void readVariable(std::string_view name);
    void readVersion();
    void chooseCodec();
    void readTables();
    void beginTableRecord();
    void readTableHead();
    void closeTable();
    void readLayerGroup();
    void readLayerProperty();
    void readColor();
    void readLineWeight();
    int layerNumber(const char *property, int low, int high, int fallback, const char *taken);
    void noteOddity(const char *property, const QString &taken);
    void finishLayer();
    void keepLayer(Layer &&layer, const Reference &linetype);
    void readEntities();
    void noteUse();
    void readViewportGroup();
    void finishViewport();
    void readObjects();
    void finish();
    void resolveLinetypes();
    void resolveCurrentLayer();
    void resolveViewports();
    void chooseViewport();

    bool next();
    bool nextInSection();
    std::string_view value() const { return trimmed(m_tokens.view(m_group.value)); }
    QString text(const DxfGroup &group) const;
    void fail(int line, const QString &reason);
    void warn(int line, const QString &reason);
    QString sentence(int line, const QString &reason) const;

    QString m_fileName;
    Drawing m_drawing;
    bool m_hasByteOrderMark;
    DxfTokens m_tokens;
    DxfGroup m_group;
    std::string_view m_section;
    bool m_hasBody = false;
    bool m_isHeaderAhead; ///< or may be; until it was read, no name can be
    std::vector<LateSection> m_late;
    int m_records = 0; ///< groups of code 0 up to this one

    Reference m_codePage;
    Reference m_currentLayer;
    quint64 m_handleSeed = 0;
    quint64 m_highestHandle = 0;

    std::string_view m_table;
    std::string_view m_recordType;
    LayerRecord m_record;
    std::vector<Reference> m_linetypes; ///< of the layers, by their index
    std::unordered_set<std::string_view> m_usedNames;
    std::string_view m_lastUsedName;
    DxfEntityPlace m_entity;
    bool m_isInViewport = false;
    ViewportRecord m_viewport;
    std::vector<ViewportRecord> m_viewports;

    QString m_error;
    QStringList m_warnings;
};

} // namespace Embedded
