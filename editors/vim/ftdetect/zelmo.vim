" Process files of Zelmo are text files whose first command is settings.
function! s:DetectZelmo() abort
  for line in getline(1, 200)
    if line !~# '^#' && line !~# '^\s*$'
      if line =~# '^\s*settings\s.*-version\>'
        setlocal filetype=zelmo
      endif
      return
    endif
  endfor
endfunction

autocmd BufNewFile,BufRead *.zelmo setlocal filetype=zelmo
autocmd BufNewFile,BufRead *.txt call s:DetectZelmo()
