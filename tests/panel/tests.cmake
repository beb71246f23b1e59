# It measures the program's memory and handles; the sanitizers keep what was freed, and Wine's figures are its own.
set(measuring day_of_rounds)
if(KIVO_SANITIZERS OR WIN32)
    set(measuring "")
endif()
kivo_add_tests(panel
    UNITS
        convergence
        ${measuring}
        frame_store
        live_session
        live_session_uploads
        nimb_process_thread
        owed_texts
        panel_frame
        panel_light
        panel_memory
        panel_record
        panel_report
        panel_sender
        panel_sender_faults
        refresh_data_thread
        retry_schedule
        screen_answers
        screen_lookup
        session_after_session
    LINK kivo_panel kivo_picture_source kivo_virtualscreen)
kivo_platform_sources(process_use panel/process_use)
target_sources(tests_panel PRIVATE panel/random_states.cpp panel/simulated_desk.cpp ${process_use})
list(TRANSFORM measuring PREPEND panel/ OUTPUT_VARIABLE measuring_tests)
kivo_limit_tests(1200 panel/convergence ${measuring_tests})
# Captions come from the compiled translations.
add_dependencies(tests_panel kivo_languages)
