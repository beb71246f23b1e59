#include "window/window_looks.h"

#include <QCoreApplication>
#include <QIcon>

#include "editor/device_frame.h"
#include "ui_main_window.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QSize kOrientationIcon(18, 18);
constexpr QRect kWordmark(20, 30, 116, 21);

// Deliberate: the first path has two slashes; both ways lead to the same picture.
QString CheckBoxStyle() {
    return QStringLiteral(
               "QCheckBox{color:%1;font-size:13px;spacing:8px}"
               "QCheckBox:checked{color:%2}"
               "QCheckBox:hover{color:%3}"
               "QCheckBox:disabled{color:%4}"
               "QCheckBox::indicator{width:16px;height:16px}"
               "QCheckBox::indicator:unchecked{image:url(://skins/seting_bt_02_n.png)}"
               "QCheckBox::indicator:unchecked:hover{image:url(:/skins/seting_bt_02_n.png)}"
               "QCheckBox::indicator:unchecked:pressed{image:url(:/skins/seting_bt_02_s.png)}"
               "QCheckBox::indicator:checked{image:url(:/skins/seting_bt_02_s.png)}"
               "QCheckBox::indicator:checked:hover{image:url(:/skins/seting_bt_02_s.png)}"
               "QCheckBox::indicator:checked:pressed{image:url(:/skins/seting_bt_02_n.png)}")
        .arg(colors::kTextMid.name(), colors::kTextBody.name(), colors::kTextHigh.name(),
             colors::kButtonTextOff.name());
}

void DressPlainParts(::Ui::MainWindow& ui) {
    const QString heading =
        QStringLiteral("color:%1;font-size:15px;padding-left:16px").arg(colors::kTextHigh.name());
    ui.label_5->setStyleSheet(heading);
    ui.label_6->setStyleSheet(heading);
    ui.dateSizeLabel->setStyleSheet(QStringLiteral("color:%1;font-size:13px").arg(colors::kTextMid.name()));
    const QString bar = QStringLiteral("background:%1").arg(colors::kAccentBright.name());
    ui.headingBar1->setStyleSheet(bar);
    ui.headingBar2->setStyleSheet(bar);
    ui.pageHair->setStyleSheet(QStringLiteral("background:%1").arg(colors::kCardEdge.name()));
    ui.orientationWell->setStyleSheet(QStringLiteral("background:%1;border:1px solid %2;border-radius:10px")
                                          .arg(colors::kWell.name(), colors::kCardEdge.name()));
    ui.pushButton->setStyleSheet(
        QStringLiteral("QPushButton{border:none;background:transparent;color:%1;font-size:12px}"
                       "QPushButton:hover{color:%2}"
                       "QPushButton:pressed{color:%3}"
                       "QPushButton:disabled{color:%4}")
            .arg(colors::kTextMid.name(), colors::kTextHigh.name(), colors::kAccentBright.name(),
                 colors::kButtonTextOff.name()));
    const auto boxes = ui.centralwidget->findChildren<QCheckBox*>();
    for (QCheckBox* box : boxes) {
        box->setStyleSheet(CheckBoxStyle());
    }
}

void DressButtons(::Ui::MainWindow& ui) {
    using Look = NimbPushButton::Look;
    for (NimbPushButton* button : {ui.btnTheme, ui.btnImage}) {
        button->SetLook(Look::Tab);
    }
    ui.btnApply->SetLook(Look::Primary);
    for (NimbPushButton* button : {ui.btnEdit, ui.btnEdit_cancel}) {
        button->SetLook(Look::Quiet);
    }
    for (NimbPushButton* button : {ui.choiceFirst, ui.choiceSecond, ui.btnLandscape, ui.btnPortrait}) {
        button->SetLook(Look::Choice);
    }
    ui.btnLandscape->SetIcons(SkinPath("orient_h_n"), SkinPath("orient_h_s"), kOrientationIcon);
    ui.btnPortrait->SetIcons(SkinPath("orient_v_n"), SkinPath("orient_v_s"), kOrientationIcon);
    ui.btnExit->SetPictures(SkinPath("close_n"), SkinPath("close_h"), SkinPath("close_s"),
                            SkinPath("close_n"));
    ui.btnMini->SetPictures(SkinPath("mini_n"), SkinPath("mini_h"), SkinPath("mini_s"), SkinPath("mini_n"));
    ui.btnRemote->SetPictures(SkinPath("remote_n"), SkinPath("remote_h"), SkinPath("remote_h"),
                              SkinPath("remote_n"));
}

}  // namespace

void DressWindow(::Ui::MainWindow& ui) {
    // The mark and, painted on the window's ground beside it, the program's name.
    auto* const wordmark = new QWidget(ui.centralwidget);
    wordmark->setObjectName(QStringLiteral("wordmark"));
    wordmark->setGeometry(kWordmark);
    wordmark->setToolTip(QStringLiteral("Kivo Screen ") + QCoreApplication::applicationVersion());
    ui.afterlabel->setPixmap(QIcon(SkinPath("logo_mark")).pixmap(ui.afterlabel->size()));
    DressPlainParts(ui);
    DressButtons(ui);
    new DeviceFrame(*ui.zoomwidget);  // its parent's
}

QString SkinPath(const char* name) {
    return QStringLiteral(":/skins/%1.png").arg(QLatin1String(name));
}

}  // namespace kivo
