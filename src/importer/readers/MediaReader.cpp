#include "MediaReader.h"

#include "DocumentFacts.h"
#include "MediaDocument.h"
#include "MovieHeader.h"

#include <tag.h>
#include <tpropertymap.h>

static QString textOf(const TagLib::String &text)
{
    return QString::fromStdString(text.to8Bit(true));
}

static void takeTag(const TagLib::Tag &tag, DocumentFacts &facts)
{
    facts.setTitle(textOf(tag.title()));
    facts.addText(DocumentFacts::authors, textOf(tag.artist()));
    facts.setText(QStringLiteral("kMDItemAlbum"), textOf(tag.album()));
    facts.setText(QStringLiteral("kMDItemMusicalGenre"), textOf(tag.genre()));
    facts.setText(QStringLiteral("kMDItemComment"), textOf(tag.comment()));
    if (tag.year() > 0)
        facts.setInteger(QStringLiteral("kMDItemRecordingYear"), tag.year());
    if (tag.track() > 0)
        facts.setInteger(QStringLiteral("kMDItemAudioTrackNumber"), tag.track());
    const TagLib::PropertyMap properties = tag.properties();
    if (const auto found = properties.find("COMPOSER"); found != properties.end())
        facts.setText(QStringLiteral("kMDItemComposer"), textOf(found->second.toString(", ")));
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
    if (const TagLib::Tag *tag = document.file().tag())
        takeTag(*tag, facts);
    if (const TagLib::AudioProperties *sound = document.file().audioProperties())
        takeSound(*sound, facts);
    return {};
}
