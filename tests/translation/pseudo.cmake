# SPDX-License-Identifier: GPL-3.0-or-later
# Writes a translation in which every text stands in angle quotes, but shortcuts:
# cmake -DTEMPLATE=<.ts> -DOUTPUT=<.ts> -P pseudo.cmake
cmake_minimum_required(VERSION 3.25)
file(READ ${TEMPLATE} text)
string(REGEX REPLACE
    "<source>([^<]*)</source>\n( *)<translation type=\"unfinished\"></translation>"
    "<source>\\1</source>\n\\2<translation>«\\1»</translation>" text "${text}")
string(REGEX REPLACE "<translation>«(Ctrl\\+[A-Za-z+]+)»" "<translation>\\1" text "${text}")
file(WRITE ${OUTPUT} "${text}")
