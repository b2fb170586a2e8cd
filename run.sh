#!/bin/bash
# Installs what is missing, builds, and starts the program; without a display it runs the tour.
called_from=$PWD
. "$(dirname "$0")/cmake/setup.sh"

install_packages

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo '画面がないので、かわりにツアーを実行します。 No display: running the tour instead.'
    build release build tour
    QT_QPA_PLATFORM=offscreen build/bin/tour build/tour ||
        stop 'ツアーに失敗しました(上の表示をご覧ください)。 The tour failed; see above.'
    echo "画面の写真(PNG)と印刷結果(PDF)は次のフォルダーにあります。 Pictures and PDFs are in: $root/build/tour"
else
    build release build kanbalore
    data=${XDG_DATA_HOME:-${HOME:?}/.local/share}/Kanbalore
    cd "$called_from" # where a file name in the arguments counts from
    exec "$root/build/bin/kanbalore" --application-folder "$data" "$@"
fi
