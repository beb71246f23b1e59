// The window's pictures: choosing, adding and taking out, and what is said of one that is not shown.

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTimer>

#include "compose/theme_catalogue.h"
#include "pictures/picture_path.h"
#include "widgets/exit_item_delegate.h"
#include "window/main_window.h"
#include "window/window_parts.h"

namespace kivo {

namespace {

constexpr QRect kPictureScrollPlace(914, 292, 6, 228);
constexpr QPoint kNoticeCorner(48, 499);

// Where the file dialog opens. A folder that is missing would stand in it as the name of a file.
QString PicturesFolder() {
    for (const auto place : {QStandardPaths::PicturesLocation, QStandardPaths::HomeLocation}) {
        QString folder = QStandardPaths::writableLocation(place);
        if (!folder.isEmpty() && QDir(folder).exists()) {
            return folder;
        }
    }
    return QString();
}

}  // namespace

void MainWindow::WirePictures() {
    m_ui->zoomwidget->SetPictures(m_source);
    m_pictures = new PictureList(m_ui->pictureList, m_source, this);
    // Beside the list, not in it, so that four columns have all of its width.
    QScrollBar* scrollBar = m_pictures->CreateScrollBar(m_ui->centralwidget);
    scrollBar->setObjectName(QStringLiteral("pictureScroll"));
    scrollBar->setGeometry(kPictureScrollPlace);
    m_pictureNotice = new PictureNotice(m_ui->centralwidget);
    m_pictureNotice->move(kNoticeCorner);
    m_looks = new PictureLooks(m_ui->centralwidget);
    QWidget* before = m_ui->themeList;
    for (const int item : kLiveItems) {
        QWidget* const box = TickBoxOf(*m_ui, item);
        setTabOrder(before, box);
        before = box;
    }
    setTabOrder(before, m_looks->First());
    setTabOrder(m_looks->First(), m_looks->Last());
    setTabOrder(m_looks->Last(), m_ui->pictureList);
    // Shown once more: a text entry that ends by it has everything shown as it was before.
    connect(m_looks, &PictureLooks::dimChosen, this, [this](int percent) {
        m_ui->zoomwidget->SetDim(percent);
        ShowLooks();
    });
    connect(m_looks, &PictureLooks::blurChosen, this, [this](int percent) {
        m_ui->zoomwidget->SetBlur(percent);
        ShowLooks();
    });
    connect(m_looks, &PictureLooks::runChanged, m_ui->zoomwidget, &ZoomWidget::EndRun);
    m_choice = new PictureChoice(m_source, this);
    connect(m_choice, &PictureChoice::taken, this, &MainWindow::TakePicture);
    connect(m_choice, &PictureChoice::refused, this, &MainWindow::RefusePicture);
    connect(&m_source, &PictureSource::answered, this, &MainWindow::ShowPictureNotice);
    connect(&m_source, &PictureSource::answered, this, &MainWindow::TakeOutsidePicture);
    // A frame was composed, perhaps, while nobody looks.
    connect(&m_source, &PictureSource::answered, &m_rest, &WindowRest::Begin);

    m_ui->pictureList->installEventFilter(this);
    m_ui->pictureList->viewport()->installEventFilter(this);
    connect(m_pictures, &PictureList::picked, this, &MainWindow::itemClickedImage);
    connect(m_pictures, &PictureList::dropped, this, &MainWindow::AddPictures);
    connect(m_pictures, &PictureList::renamed, this, &MainWindow::SavePictures);
    // After the line in which it was typed is gone: a box that comes between would find it open.
    connect(
        m_pictures, &PictureList::nameRefused, this,
        [this] {
            ExitMessageBox::Tell(this,
                                 WindowText(QT_TRANSLATE_NOOP("MainWindow", "名称太多，无法保存此名称。")));
        },
        Qt::QueuedConnection);
    connect(m_pictures->Delegate(), &QAbstractItemDelegate::closeEditor, this, &MainWindow::GoBackOnceLeft);
    connect(m_ui->pictureList, &MyListWidget::rightClick, this, &MainWindow::slotRightClick);
    connect(m_pictures->Delegate(), &ExitItemDelegate::handleDeleteClick, this, &MainWindow::SlotDeletePix);
    // Whoever comes back from another program may have changed the picture there.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            m_ui->zoomwidget->CheckPicture();
        }
    });
}

void MainWindow::ShowChosenPicture() {
    const QString open = m_choice->Open();
    m_pictures->SelectPicture(open.isEmpty() ? PicturePath(m_ui->zoomwidget->Shown()) : open);
}

void MainWindow::ShowLooks() {
    const ZoomWidget* editor = m_ui->zoomwidget;
    m_looks->Show(LayoutInForce(editor->Edited()), !editor->IsTrimming());
}

void MainWindow::ShowPictureNotice() {
    const QString path = PicturePath(m_ui->zoomwidget->Shown());
    const std::optional<Picture> known = m_source.Known(path);
    const PictureFailure failure = known ? known->failure : PictureFailure::None;
    m_pictureNotice->Show(path, failure);
    // Over its stand-in nobody can see which part of a picture they choose.
    m_editBar->SetTrimEnabled(failure == PictureFailure::None);
}

void MainWindow::LetGoOfPictures() {
    m_ground.LetGo();
    m_ui->zoomwidget->LetGoOfPictures();
    m_pictures->LetGoOfIcons();
    m_source.LetGoOfImages();
}

void MainWindow::TakePicture(const QString& path, const QString& inPlaceOf) {
    ZoomWidget* editor = m_ui->zoomwidget;
    editor->SetBackground(path);
    if (!inPlaceOf.isEmpty()) {
        editor->ReplacePicture(inPlaceOf, path);
    }
    ShowChosenPicture();
    ShowPictureNotice();
}

void MainWindow::RefusePicture(const QString& /*path*/, const QString& inPlaceOf) {
    // Nobody has asked for the picture that moves up: where it cannot be shown, that is not told.
    if (!inPlaceOf.isEmpty()) {
        TakePicture(BuiltInBackgrounds().constFirst(), inPlaceOf);
        return;
    }
    ShowChosenPicture();
    // Over another question, the picture's own card says it.
    if (isVisible() && QApplication::activeModalWidget() == nullptr) {
        ExitMessageBox::Tell(this, WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法打开此图片。")));
    }
}

QStringList MainWindow::ChoosePictures() {
    return QFileDialog::getOpenFileNames(this, WindowText(QT_TRANSLATE_NOOP("MainWindow", "打开图片")),
                                         PicturesFolder(), PictureList::PictureFileFilter());
}

void MainWindow::SavePictures() {
    m_stateLine->NoteSaved(SettingsPart::Pictures, m_pictures->SavePictureList());
}

void MainWindow::AddPictures(const QStringList& paths) {
    if (paths.isEmpty()) {
        return;
    }
    const PictureList::Inserted inserted = m_pictures->InsertUserPictures(paths);
    if (inserted.lastRow > 0) {
        SavePictures();
        m_choice->Choose(m_pictures->PathAt(inserted.lastRow));
        ShowChosenPicture();
    }
    if (!inserted.areAll) {
        ExitMessageBox::Tell(this, WindowText(QT_TRANSLATE_NOOP("MainWindow", "图片太多，无法再添加。")));
    }
}

void MainWindow::itemClickedImage(const QModelIndex& index) {
    const int row = index.row();
    if (row < 0) {
        return;
    }
    if (row == 0) {
        const QStringList paths = m_parts.choosePictures ? m_parts.choosePictures(this) : ChoosePictures();
        AskWantedExit();
        AddPictures(paths);
    } else {
        m_choice->Choose(m_pictures->PathAt(row));
    }
    ShowChosenPicture();
}

void MainWindow::slotRightClick() {
    SlotDeletePix(m_ui->pictureList->PressedRow());
}

void MainWindow::SlotDeletePix(int row) {
    if (m_pictures->IsUserPicture(row)) {
        const QString name = m_pictures->NameAt(row);
        const ExitMessageBox::Question question{
            WindowText(QT_TRANSLATE_NOOP3("MainWindow", "温馨提示", "before a picture is deleted")),
            name.isEmpty() ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "是否删除此图片？"))
                           : WindowText(QT_TRANSLATE_NOOP("MainWindow", "是否删除图片“%1”？")).arg(name),
            WindowText(QT_TRANSLATE_NOOP3("MainWindow", "确定", "deletes the picture")), true};
        if (ExitMessageBox::Ask(this, question)) {
            const QString removed = m_pictures->RemoveUserPicture(row);
            SavePictures();
            TakePictureOut(removed, row);
        }
    } else if (m_pictures->IsBuiltIn(row)) {
        ExitMessageBox::Tell(this, WindowText(QT_TRANSLATE_NOOP("MainWindow", "默认图片不能删除。")));
    }
    ShowChosenPicture();
}

void MainWindow::TakePictureOut(const QString& removed, int row) {
    ZoomWidget* editor = m_ui->zoomwidget;
    if (IsSamePicture(m_choice->Open(), removed)) {
        m_choice->Drop();
    }
    const QString next = m_pictures->BackgroundAfterRemoval(removed, removed, row);
    if (next == removed) {
        return;
    }
    if (IsSamePicture(PicturePath(editor->Shown()), removed)) {
        m_choice->Choose(next, removed);
    } else {
        editor->ReplacePicture(removed, next);
    }
}

// The keys, or a press that is let go elsewhere, move the frame without choosing: it goes back in the end.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut && watched == m_ui->pictureList) {
        GoBackOnceLeft();
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_ui->pictureList->viewport()) {
        QTimer::singleShot(0, this, &MainWindow::ShowChosenPicture);
    }
    return QMainWindow::eventFilter(watched, event);
}

// A name that is typed, or the menu, is not elsewhere: it belongs to the row.
void MainWindow::GoBackOnceLeft() {
    QTimer::singleShot(0, this, [this] {
        const QWidget* const focus = QApplication::focusWidget();
        if (focus != m_ui->pictureList && !m_ui->pictureList->isAncestorOf(focus)) {
            ShowChosenPicture();
        }
    });
}

}  // namespace kivo
