#pragma once

#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPText.h"

#include <gtest/gtest.h>

// What the tests of Karvex say often: the bytes on a file, and "it worked".

inline std::optional<QByteArray> storedBytes(const QString &path, const QString &key)
{
    return XPExtendedAttributes::read(path, Karvex::spotlightKey(key)).valueOr({});
}

inline void storeBytes(const QString &path, const QString &key, const QByteArray &bytes)
{
    ASSERT_EQ(XPExtendedAttributes::write(path, Karvex::spotlightKey(key), bytes), std::nullopt);
}

inline QStringList tagsOf(const QString &path)
{
    const auto tags = Karvex::getUserTags(path);
    EXPECT_TRUE(tags) << (tags ? "" : tags.error().message.toStdString());
    return tags.valueOr({});
}

inline void expectError(const std::optional<XPError> &error, XPError::Kind kind,
                        const QString &domain, qint64 code, const QString &path)
{
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, kind) << error->message.toStdString();
    EXPECT_EQ(error->domain, domain);
    EXPECT_EQ(error->code, code);
    EXPECT_EQ(error->path, path);
}
