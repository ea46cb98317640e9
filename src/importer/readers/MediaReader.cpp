#include "MediaReader.h"

#include "DocumentFacts.h"
#include "MediaDocument.h"
#include "MovieHeader.h"
#include "PictureDecoding.h"

#include <QImage>
#include <attachedpictureframe.h>
#include <flacfile.h>
#include <id3v2tag.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <tpropertymap.h>

static QString textOf(const TagLib::String &text)
{
    return QString::fromStdString(text.to8Bit(true));
}

// By the library's names for what every kind of tag has.
static void takeTags(const TagLib::PropertyMap &tags, DocumentFacts &facts)
{
    const auto values = [&tags](const char *name) {
        const auto found = tags.find(name);
        return found == tags.end() ? TagLib::StringList() : found->second;
    };
    const auto text = [&values](const char *name) { return textOf(values(name).toString(", ")); };
    facts.setTitle(text("TITLE"));
    for (const TagLib::String &artist : values("ARTIST"))
        facts.addText(DocumentFacts::authors, textOf(artist));
    facts.setText(QStringLiteral("kMDItemAlbum"), text("ALBUM"));
    facts.setText(QStringLiteral("kMDItemMusicalGenre"), text("GENRE"));
    facts.setText(QStringLiteral("kMDItemComposer"), text("COMPOSER"));
    facts.setText(QStringLiteral("kMDItemComment"), text("COMMENT"));
    facts.setText(DocumentFacts::copyright, text("COPYRIGHT"));
    if (const int year = text("DATE").left(4).toInt(); year > 0)
        facts.setInteger(QStringLiteral("kMDItemRecordingYear"), year);
    // "3/12": the third of twelve.
    if (const int track = text("TRACKNUMBER").section(u'/', 0, 0).toInt(); track > 0)
        facts.setInteger(QStringLiteral("kMDItemAudioTrackNumber"), track);
}

static void takeSound(const TagLib::AudioProperties &sound, DocumentFacts &facts)
{
    if (sound.lengthInMilliseconds() > 0)
        facts.setReal(DocumentFacts::duration, sound.lengthInMilliseconds() / 1000.0);
    const auto positive = [&facts](const char *name, qint64 value) {
        if (value > 0)
            facts.setInteger(QString::fromLatin1(name), value);
    };
    positive("kMDItemAudioBitRate", qint64{sound.bitrate()} * 1000);
    positive("kMDItemAudioSampleRate", sound.sampleRate());
    positive("kMDItemAudioChannelCount", sound.channels());
}

std::optional<DocumentFailure> MediaReader::read(const DocumentSource &source,
                                                 DocumentAnswer &answer) const
{
    DocumentFacts facts(answer);
    const bool isMovie = MovieHeader::read(source, facts);
    const MediaDocument document(source);
    if (document.file().isNull())
        return isMovie ? std::nullopt : std::optional(DocumentFailure::Unsupported);
    takeTags(document.file().file()->properties(), facts);
    if (const TagLib::AudioProperties *sound = document.file().audioProperties())
        takeSound(*sound, facts);
    return {};
}

static QByteArray bytesOf(const TagLib::ByteVector &bytes)
{
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

static QByteArray coverIn(TagLib::ID3v2::Tag *tag)
{
    if (!tag)
        return {};
    for (const TagLib::ID3v2::Frame *frame : tag->frameList("APIC")) {
        if (const auto *picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame *>(frame))
            return bytesOf(picture->picture());
    }
    return {};
}

// The picture that a player shows: of the ID3 tag, of FLAC's own blocks, or of the MP4 atom.
static QByteArray coverIn(TagLib::File *file)
{
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file))
        return coverIn(mpeg->ID3v2Tag());
    if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(file)) {
        const auto pictures = flac->pictureList();
        return pictures.isEmpty() ? QByteArray() : bytesOf(pictures.front()->data());
    }
    auto *movie = dynamic_cast<TagLib::MP4::File *>(file);
    if (!movie || !movie->tag() || !movie->tag()->contains("covr"))
        return {};
    const auto covers = movie->tag()->item("covr").toCoverArtList();
    return covers.isEmpty() ? QByteArray() : bytesOf(covers.front().data());
}

std::optional<DocumentFailure> MediaReader::picture(const DocumentSource &source, int page,
                                                    int pixels, QImage &image) const
{
    const MediaDocument document(source);
    const QByteArray cover =
        document.file().isNull() || page > 1 ? QByteArray() : coverIn(document.file().file());
    return cover.isEmpty() ? std::optional(DocumentFailure::Unsupported)
                           : PictureDecoding::decode(cover, pixels, image);
}
