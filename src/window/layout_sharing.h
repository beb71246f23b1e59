#pragma once

// Layouts as files: reads and writes them beside the window, on threads of its own, so that no file holds it
// up. What is read is checked, and its picture is in the program's own folder before anybody is told. Knows
// no widget. GUI thread.

#include <QObject>
#include <QString>
#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "compose/screen_state.h"

namespace kivo {

class PictureWorkers;

class LayoutSharing : public QObject {
    Q_OBJECT

public:
    enum class Trouble {
        None,
        NoFile,         // none there, or it cannot be read
        NoLayout,       // another kind of file, a damaged one, or one with a value that makes no sense
        Newer,          // of a later version
        BadPicture,     // the layout's picture cannot be shown
        CannotBeSaved,  // neither file nor picture could be written
        NoAnswer,       // the file's place does not answer
    };

    struct Outcome {
        Trouble trouble = Trouble::None;
        QString reason;  // one sentence in English, where there is trouble
        // Of an import: the layout, whose picture is a file of this program or a part of it.
        std::optional<ScreenState> layout;
        QString newPicture;  // the file that was made for it; empty: it was there already
    };
    using Done = std::function<void(const Outcome& outcome)>;

    // Pictures that come with layouts are kept in that folder, made when first needed.
    explicit LayoutSharing(const QString& pictureFolder, QObject* parent = nullptr,
                           std::chrono::milliseconds patience = std::chrono::seconds(20));
    // Waits for nothing that hangs; nobody is told any more. See PictureWorkers::EverythingEnded.
    ~LayoutSharing() override;

    // Reads a file. done is called once, from the event loop, after the patience at the latest. Whoever does
    // not take the layout then gives it back (Forget).
    void Import(const QString& file, Done done);

    // Writes what is shown as a file, in one step: it is complete or as it was. pictureName is what the user
    // calls the picture; empty: its file's name tells.
    void Export(const ScreenState& shown, const QString& pictureName, const QString& file, Done done);

    // Removes the picture that came with it.
    static void Forget(const Outcome& outcome);

private:
    // On a worker; isWanted tells whether somebody still waits.
    using Task = std::function<Outcome(const std::atomic<bool>& isWanted)>;
    struct Job {
        int number;
        Task task;
        Done done;
        std::shared_ptr<std::atomic<bool>> isWanted;
    };
    // What a worker may outlive.
    struct Link;

    void Run(Task task, Done done);
    void BeginFirst();
    void EndJob(int number, const Outcome& outcome);

    const QString m_pictureFolder;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<Link> m_link;
    std::deque<Job> m_jobs;  // one at a time: the first is under way
    std::unique_ptr<PictureWorkers> m_worker;
    int m_lastNumber = 0;
};

}  // namespace kivo
