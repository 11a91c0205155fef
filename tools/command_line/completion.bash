# Completion for bash: options as --help tells them, and files. It needs Debian's bash-completion.
complete -F _longopt make_database check_feed play_feed record_feed
