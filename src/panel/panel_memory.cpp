#include "panel/panel_memory.h"

#include <QFile>
#include <QSaveFile>
#include <QStringList>

#include "config/folders.h"
#include "config/replace_file.h"

namespace kivo {

namespace {

const QByteArray kHead = QByteArrayLiteral("KivoPanel 1");
const QByteArray kPanel = QByteArrayLiteral("panel ");
const QByteArray kFrame = QByteArrayLiteral("frame ");
constexpr int kIdLength = 40;
constexpr qint64 kLongestFile = 4096;

// "name value"; the value without the name, null for a line of another name.
QByteArray ValueOf(const QByteArray& line, const QByteArray& name) {
    return line.startsWith(name) ? QByteArray::fromPercentEncoding(line.mid(name.size())) : QByteArray();
}

}  // namespace

PanelMemory::PanelMemory(QString path) : m_path(std::move(path)) {}

QString PanelMemory::DefaultPath() {
    return WorkingFolder() + QStringLiteral("/whole.state");
}

std::optional<RememberedPanel> PanelMemory::Read() const {
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QList<QByteArray> lines = file.read(kLongestFile).split('\n');
    if (lines.size() != 4 || lines[0] != kHead || !lines[3].isEmpty()) {
        return std::nullopt;
    }
    const RememberedPanel panel{ValueOf(lines[1], kPanel), ValueOf(lines[2], kFrame)};
    if (!lines[1].startsWith(kPanel) || panel.frameId.size() != kIdLength) {
        return std::nullopt;
    }
    return panel;
}

void PanelMemory::Write(const RememberedPanel& panel) const {
    QSaveFile file(m_path);
    const QByteArray text =
        kHead + '\n' + kPanel + panel.panelKey.toPercentEncoding() + '\n' + kFrame + panel.frameId + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !CommitWhole(file)) {
        qWarning("%s: %s", qUtf8Printable(m_path), qUtf8Printable(file.errorString()));
    }
}

void PanelMemory::Forget() const {
    QFile file(m_path);
    if (file.exists() && !file.remove()) {
        qWarning("%s: %s", qUtf8Printable(m_path), qUtf8Printable(file.errorString()));
    }
}

bool RemoveFormerMark() {
    QFile mark(WorkingFolder() + QStringLiteral("/whole.pending"));
    const bool wasThere = mark.exists();
    mark.remove();
    return wasThere;
}

}  // namespace kivo
