#!/bin/sh
# Writes the manual page sheafwork.1 (French) from the program's own --help
# texts, so that it names every command and option the program has:
#   make-manpage.sh SHEAFWORK_EXE VERSION OUTPUT
# The sections the help does not hold (files, environment) are written here.
set -eu
exe=$1
version=$2
output=$3
LC_ALL=C.UTF-8
export LC_ALL

# The help of `sheafwork WORDS... --help`.
help() { "$exe" "$@" --help; }

# The commands a help text lists under "Commandes:", one per line.
commands() {
  awk '/^Commandes:$/ { on = 1; next } on && /^$/ { exit }
       on && /^  [^ -]/ { print $1 }'
}

# A help text in roff: the text before the usage line as paragraphs, the
# usage line in bold, each "Name:" section as a list of tagged paragraphs,
# the text after the sections as paragraphs. `skip_first` leaves out the
# first line (the command's summary, already in its heading).
to_roff() {
  awk -v skip_first="$1" '
    function esc(s) {
      gsub(/\\/, "\\e", s)
      gsub(/-/, "\\-", s)
      if (s ~ /^[.\047]/) s = "\\&" s
      return s
    }
    NR == 1 && skip_first { next }
    /^Utilisation: / {
      sub(/^Utilisation: /, "")
      print ".PP"; print "\\fBUtilisation :\\fR \\fB" esc($0) "\\fR"
      state = "sections"; next
    }
    /^$/ { if (state != "list") pending = 1; else { state = "after"; label = "" }; next }
    state == "sections" || state == "after" || state == "list" {
      if ($0 ~ /^[^ ].*:$/) {
        label = $0; sub(/:$/, " :", label)
        state = "list"; next
      }
      if (state == "list" && $0 ~ /^  [^ ]/) {
        line = substr($0, 3)
        if (line ~ /^-h,--help/ && skip_first) next
        n = match(line, /   */)
        term = n ? substr(line, 1, n - 1) : line
        text = n ? substr(line, n + RLENGTH) : ""
        if (label != "") { print ".PP"; print "\\fI" esc(label) "\\fR"; label = "" }
        print ".TP"; print "\\fB" esc(term) "\\fR"; if (text != "") print esc(text); next
      }
      if (state == "list" && $0 ~ /^   /) { line = $0; sub(/^ +/, "", line); print esc(line); next }
    }
    {
      if (pending || !started) print ".PP"
      pending = 0; started = 1
      print esc($0)
    }
  '
}

{
  date=$(date -u -d "@${SOURCE_DATE_EPOCH:-$(date +%s)}" +%Y-%m-%d)
  printf '\047\\" -*- coding: UTF-8 -*-\n'
  printf '.\\" Written by make-manpage.sh from the texts of sheafwork --help.\n'
  printf '.TH SHEAFWORK 1 "%s" "sheafwork %s" "Commandes de l\047utilisateur"\n' "$date" "$version"
  cat <<'ROFF'
.SH NOM
sheafwork \- tracer en différé des listes de dessins CAO (DXF, DWG)
.SH SYNOPSIS
.B sheafwork
.RI [ LISTE.qx3 ]
.br
.B sheafwork list
.I COMMANDE
.RI [ OPTIONS ]
.I LISTE.qx3
.RI [ DESSIN ...]
.br
.B sheafwork plot
.RI [ OPTIONS ]
.I LISTE.qx3
.br
.B sheafwork check
.RI [ OPTIONS ]
.I LISTE.qx3
.SH DESCRIPTION
ROFF
  help | to_roff 0
  echo '.SH COMMANDES'
  for command in $(help | commands); do
    echo ".SS \"sheafwork $command\""
    help "$command" | to_roff 1
    for sub in $(help "$command" | commands); do
      echo ".SS \"sheafwork $command $sub\""
      help "$command" "$sub" | to_roff 1
    done
  done
  cat <<'ROFF'
.SH FICHIERS
.TP
.I /usr/share/sheafwork/
Les données du programme, cherchées à partir du dossier de l'exécutable
(\fI../share/sheafwork\fR) : traceurs (\fIplotters/\fR), styles de tracé
(\fIplotstyles/\fR), polices de formes communes à tous les utilisateurs
(\fIfonts/\fR), pages d'aide (\fIhelp/\fR) et convertisseur DWG
(\fIdwg2dxf/\fR). Sans ce dossier, \fBplot\fR et \fBcheck\fR s'arrêtent en
nommant les dossiers cherchés.
.TP
.I /usr/lib/sheafwork/sheafwork\-qt.so
Le module Qt : l'application de bureau et les sorties PNG, SVG et
imprimante. Il n'est chargé que lorsqu'une de celles\-ci sert.
.TP
.I ~/.local/share/sheafwork/plotters/
Les configurations de traceurs (\fI.pc3\fR) de l'utilisateur.
.TP
.I ~/.local/share/sheafwork/plotstyles/
Les tables de styles de tracé (\fI.ctb\fR) de l'utilisateur.
.TP
.I ~/.local/share/sheafwork/fonts/
Les polices de formes (\fI.shx\fR) de l'utilisateur ; elles sont cherchées
après celles du programme, comme le reste du chemin de support.
.TP
.I ~/.local/share/sheafwork/
Les journaux d'un traçage dont la liste n'en nomme pas
(\fIQXJOURNL.LOG\fR, \fIQXERROR.LOG\fR).
.TP
.IR journal .shard\-K\-of\-N.ext ", " journal .shard\-K\-of\-N.ext.json
Les journaux de la part K de N d'une liste (\fBplot \-\-shard K/N\fR), à
côté de ceux de la liste, et le relevé de la part que \fBlogs merge\fR lit
pour les réunir.
.TP
.I ~/.cache/sheafwork/
Ce que le programme garde pour aller plus vite (les polices trouvées) ; il
peut être effacé à tout moment.
.SH ENVIRONNEMENT
.TP
.B XDG_DATA_HOME
Remplace \fI~/.local/share\fR dans les chemins ci\-dessus.
.TP
.B XDG_CACHE_HOME
Remplace \fI~/.cache\fR.
.TP
.B SHEAFWORK_DWG_CONVERTER
Un autre convertisseur DWG, lancé comme
\fIconvertisseur ENTRÉE.dwg SORTIE.dxf\fR.
.TP
.B SHEAFWORK_DWG_TIME_LIMIT
La durée maximale d'une conversion DWG, en secondes (120 par défaut).
.TP
.B SHEAFWORK_FALLBACK_DEVICE
Le périphérique qui trace une présentation sans traceur ou dont le traceur
manque sur cette machine (\fIPDF.pc3\fR par défaut).
.SH "VOIR AUSSI"
.BR node (1),
.BR parallel (1),
.BR lpstat (1)
ROFF
} >"$output.tmp"
mv "$output.tmp" "$output"
