#include "XPDataOffer.h"

#include <QMimeData>

const QString XPDataOffer::directSaveFormat = QStringLiteral("XdndDirectSave0");
const QString XPDataOffer::anyBytesFormat = QStringLiteral("application/octet-stream");

XPDataOffer::~XPDataOffer() = default;

XPResult<XPDataOffer::Answer> XPDataOffer::save(const QByteArray &)
{
    return Answer::Refuses;
}

namespace {

class MimeOffer : public XPDataOffer
{
public:
    explicit MimeOffer(const QMimeData *data) : m_data(data) {}
    QStringList formats() override { return m_data->formats(); }
    XPResult<QByteArray> read(const QString &format) override { return m_data->data(format); }

private:
    const QMimeData *m_data;
};

} // namespace

std::unique_ptr<XPDataOffer> XPDataOffer::of(const QMimeData *data)
{
    return std::make_unique<MimeOffer>(data);
}
