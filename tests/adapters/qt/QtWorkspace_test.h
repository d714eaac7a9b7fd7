#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QThread>
#include <QUrl>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {

/// Replaces the user's default programs and records the URLs that they open.
class Programs final : public QObject {
    Q_OBJECT

public:
    Programs()
    {
        for (const auto& scheme : schemes()) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }
    ~Programs() override
    {
        for (const auto& scheme : schemes()) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;

    Q_INVOKABLE void open(const QUrl& url)
    {
        EXPECT_EQ(QThread::currentThread(), thread());
        opened.push_back(url.toEncoded().toStdString());
    }

    std::vector<std::string> opened;

private:
    static QStringList schemes()
    {
        return {QStringLiteral("http"),       QStringLiteral("https"), QStringLiteral("mailto"),
                QStringLiteral("file"),       QStringLiteral("ftp"),   QStringLiteral("smb"),
                QStringLiteral("javascript"), QStringLiteral("tel")};
    }
};

}  // namespace dunmora::test
