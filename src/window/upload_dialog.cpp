#include "window/upload_dialog.h"

#include "panel/live_session.h"
#include "panel/nimb_process_thread.h"
#include "widgets/scrim.h"
#include "window/nimb_process_dialog.h"

namespace kivo {

bool UploadBehindDialog(QWidget& window, LiveSession& session) {
    const Scrim scrim(window);
    NimbProcessDialog dialog(&window, &window);
    const auto connectDialog = [&dialog](NimbProcessThread& thread) {
        QObject::connect(&thread, &NimbProcessThread::DoProcessDlg, &dialog,
                         &NimbProcessDialog::slotProcessDlg);
    };
    return session.StartUpload(connectDialog) != nullptr && dialog.exec() == QDialog::Accepted;
}

}  // namespace kivo
