// MainWindow: what a second start asks for on its command line. Done without a dialog and beside whatever is
// being edited.

#include <QApplication>
#include <algorithm>

#include "pictures/picture_path.h"
#include "window/away_light.h"
#include "window/main_window.h"
#include "window/outside_change.h"
#include "window/window_parts.h"

namespace kivo {

void MainWindow::TakeFromOutside(const OutsideCommands& commands, const OutsideReply& reply) {
    if (const std::optional<QString>& picture = ValueOf(commands, OutsideKind::Picture)) {
        // Whether it can be shown is found out beside the window.
        m_outsidePictures.push_back({*picture, commands, reply});
        m_source.Check(*picture);
        return;
    }
    if (const std::optional<QString>& file = ValueOf(commands, OutsideKind::Apply)) {
        m_sharing->Import(*file, [this, commands, reply](const LayoutSharing::Outcome& outcome) {
            if (reply.isAwaited()) {
                reply.give(ApplyImported(outcome, commands));
            } else {
                LayoutSharing::Forget(outcome);  // the second start has ended, and has said so
            }
        });
        return;
    }
    reply.give(DoFromOutside(commands));
}

OutsideAnswer MainWindow::ApplyImported(const LayoutSharing::Outcome& outcome,
                                        const OutsideCommands& commands) {
    const QString& file = *ValueOf(commands, OutsideKind::Apply);
    const QString trouble =
        outcome.layout ? SaveImported(outcome,
                                      [this](const ScreenState& layout) {
                                          EditState next = m_ui->zoomwidget->Saved();
                                          TakeLayout(next, layout);
                                          return next == m_ui->zoomwidget->Saved() || ApplyFromOutside(next);
                                      })
                       : outcome.reason;
    if (!trouble.isEmpty()) {
        return {false, QStringLiteral("The layout '%1' cannot be applied. %2").arg(file, trouble)};
    }
    return DoBesides(commands);
}

void MainWindow::TakeOutsidePicture(const QString& path) {
    const auto isOther = [&path](const OutsidePicture& waiting) {
        return !IsSamePicture(waiting.path, path);
    };
    const auto first = std::stable_partition(m_outsidePictures.begin(), m_outsidePictures.end(), isOther);
    const std::vector<OutsidePicture> answered(first, m_outsidePictures.end());
    m_outsidePictures.erase(first, m_outsidePictures.end());
    for (const OutsidePicture& asked : answered) {
        if (!asked.reply.isAwaited()) {
            continue;  // its second start has ended, and has said so
        }
        const std::optional<Picture> known = m_source.Known(asked.path);
        const bool canBeShown = !known || known->failure == PictureFailure::None;
        asked.reply.give(
            canBeShown
                ? DoFromOutside(asked.commands)
                : OutsideAnswer{false, QStringLiteral("The picture '%1' cannot be shown.").arg(asked.path)});
    }
}

OutsideAnswer MainWindow::DoFromOutside(const OutsideCommands& commands) {
    QString trouble;
    const std::optional<EditState> next = ChangedFromOutside(m_ui->zoomwidget->Saved(), commands, trouble);
    if (!next) {
        return {false, trouble};
    }
    const std::optional<QString>& picture = ValueOf(commands, OutsideKind::Picture);
    if (picture && !AddOutsidePicture(*picture)) {
        return {false, QStringLiteral("There are too many pictures to add another one.")};
    }
    if (*next != m_ui->zoomwidget->Saved() && !ApplyFromOutside(*next)) {
        return {false, QStringLiteral("The settings cannot be saved.")};
    }
    return DoBesides(commands);
}

OutsideAnswer MainWindow::DoBesides(const OutsideCommands& commands) {
    if (const std::optional<int> blank = WordOf(commands, OutsideKind::Blank)) {
        m_away->SetAsked(*blank == 0);
    }
    if (ValueOf(commands, OutsideKind::Show)) {
        ShowInFront();  // a crontab may ask for it at a locked screen
    }
    return {true, QString()};
}

bool MainWindow::AddOutsidePicture(const QString& path) {
    const int before = m_pictures->UserPictureCount();
    const bool isThere = m_pictures->InsertUserPictures({path}).lastRow > 0;
    if (m_pictures->UserPictureCount() != before) {
        SavePictures();
    }
    return isThere;
}

bool MainWindow::ApplyFromOutside(const EditState& next) {
    ZoomWidget* editor = m_ui->zoomwidget;
    // A picture that was chosen and is still looked at is an edit too.
    const bool isSaved = editor->ReplaceSaved(next, m_choice->Open().isEmpty());
    m_stateLine->NoteSaved(SettingsPart::Layout, isSaved);
    if (!isSaved) {
        return false;
    }
    ShowState();
    const ScreenState state = MakeScreenState(next, m_language);
    if (m_live || m_waitsForUpload) {
        m_session->SetChosen(state);
        m_session->StartUpload();
    } else {
        // The first frame is yet to come: that of these settings.
        m_session->SetLoaded(state);
    }
    return true;
}

}  // namespace kivo
