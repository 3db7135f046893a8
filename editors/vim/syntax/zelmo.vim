" Vim syntax file: process files of Zelmo
if exists('b:current_syntax')
  finish
endif
let s:cpo_save = &cpo
set cpo&vim

syntax case match
syntax iskeyword @,48-57,_,-,192-255

" A line begins with a command; what is none is an error. What comes later here wins.
syntax match zelmoUnknown /^\s*\zs\S\+/
syntax match zelmoRemark /^#.*$/ contains=@Spell

syntax match zelmoUnknownArgument /\%(\s\)\@1<=-\a\S*/ contained
syntax match zelmoTab /\t\+/ contained
syntax match zelmoNumber /\%(\s\)\@1<=[-+]\?\%(\d\+\.\?\d*\|\.\d\+\)\%([eE][-+]\?\d\+\)\?/ contained
syntax match zelmoMask /\%(\s\)\@1<=\d\+\%(\/\d\+\)\?\%(,\d\+\%(\/\d\+\)\?\)*\ze\%(\s\|$\)/ contained
syntax match zelmoVariable /\${\h\w*\%(:-[^} \t]*\)\?}/ contained
syntax cluster zelmoValue contains=zelmoUnknownArgument,zelmoTab,zelmoNumber,zelmoMask,zelmoVariable

" The commands, each with the arguments that it takes.
syntax region zelmoSettings matchgroup=zelmoCommand start=/^\s*settings\>/ end=/$/ oneline keepend contains=zelmoSettingsArgument,@zelmoValue
syntax keyword zelmoSettingsArgument contained -version -N -angle -use_nm -heights -legend
syntax region zelmoLocation matchgroup=zelmoCommand start=/^\s*location\>/ end=/$/ oneline keepend contains=zelmoLocationArgument,@zelmoValue
syntax keyword zelmoLocationArgument contained -x -y -dx -dy
syntax region zelmoGds matchgroup=zelmoCommand start=/^\s*gds\>/ end=/$/ oneline keepend contains=zelmoGdsArgument,@zelmoValue
syntax keyword zelmoGdsArgument contained -cell
syntax region zelmoDeposition matchgroup=zelmoCommand start=/^\s*deposition\>/ end=/$/ oneline keepend contains=zelmoDepositionArgument,@zelmoValue
syntax keyword zelmoDepositionArgument contained -name -type -thickness -sc -color -scolor -alpha
syntax region zelmoCoating matchgroup=zelmoCommand start=/^\s*coating\>/ end=/$/ oneline keepend contains=zelmoCoatingArgument,@zelmoValue
syntax keyword zelmoCoatingArgument contained -name -type -thickness -dop -color -scolor -alpha
syntax region zelmoPhoto matchgroup=zelmoCommand start=/^\s*photo\>/ end=/$/ oneline keepend contains=zelmoPhotoArgument,@zelmoValue
syntax keyword zelmoPhotoArgument contained -name -mask_id -type -res -taper -thickness -bias -shift
syntax region zelmoEtch matchgroup=zelmoCommand start=/^\s*etch\>/ end=/$/ oneline keepend contains=zelmoEtchArgument,@zelmoValue
syntax keyword zelmoEtchArgument contained -name -targets -depth -iso -resist
syntax region zelmoRelease matchgroup=zelmoCommand start=/^\s*release\>/ end=/$/ oneline keepend contains=zelmoReleaseArgument,@zelmoValue
syntax keyword zelmoReleaseArgument contained -targets -name
syntax region zelmoStrip matchgroup=zelmoCommand start=/^\s*strip\>/ end=/$/ oneline keepend contains=zelmoStripArgument,@zelmoValue
syntax keyword zelmoStripArgument contained -name
syntax region zelmoPolish matchgroup=zelmoCommand start=/^\s*polish\>/ end=/$/ oneline keepend contains=zelmoPolishArgument,@zelmoValue
syntax keyword zelmoPolishArgument contained -name -stop -over -above -level
syntax region zelmoImplant matchgroup=zelmoCommand start=/^\s*implant\>/ end=/$/ oneline keepend contains=zelmoImplantArgument,@zelmoValue
syntax keyword zelmoImplantArgument contained -name -type -targets -depth -color -scolor -alpha

" They take none: dump ignores the rest of its line, stop ends the file.
syntax region zelmoRest matchgroup=zelmoCommand start=/^\s*dump\>/ end=/$/ oneline keepend
syntax region zelmoRest matchgroup=zelmoCommand start=/^\s*stop\>/ end=/\%$/

highlight default link zelmoCommand Statement
highlight default link zelmoSettingsArgument Identifier
highlight default link zelmoLocationArgument Identifier
highlight default link zelmoGdsArgument Identifier
highlight default link zelmoDepositionArgument Identifier
highlight default link zelmoCoatingArgument Identifier
highlight default link zelmoPhotoArgument Identifier
highlight default link zelmoEtchArgument Identifier
highlight default link zelmoReleaseArgument Identifier
highlight default link zelmoStripArgument Identifier
highlight default link zelmoPolishArgument Identifier
highlight default link zelmoImplantArgument Identifier
highlight default link zelmoNumber Number
highlight default link zelmoMask Number
highlight default link zelmoVariable PreProc
highlight default link zelmoRemark Comment
highlight default link zelmoRest Comment
highlight default link zelmoUnknown Error
highlight default link zelmoUnknownArgument Error
highlight default link zelmoTab Error

" Everything behind a stop is looked at from there.
syntax sync fromstart

let b:current_syntax = 'zelmo'
let &cpo = s:cpo_save
unlet s:cpo_save
