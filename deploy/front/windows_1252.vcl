# Takes the header X-Error-Message of resp from UTF-8 to Windows-1252, the code page in which the devices read it.
# A text that is not UTF-8 from end to end, such as one that is in Windows-1252 already, stays as it is; a character
# that the code page lacks becomes a question mark.
import blob;

sub message_to_windows_1252 {
    if (resp.http.X-Error-Message ~ "[\x80-\xFF]" && resp.http.X-Error-Message ~
        "^([\x01-\x7F]|[\xC2-\xDF][\x80-\xBF]|[\xE0-\xEF][\x80-\xBF]{2}|[\xF0-\xF4][\x80-\xBF]{3})*$") {
        # Each byte outside of plain ASCII is written %XX here, each character that is done =XX.
        set resp.http.T = blob.transcode(encoding = URL, case = UPPER, encoded = resp.http.X-Error-Message);
        set resp.http.T = regsuball(resp.http.T, "%([2-7].)", "=\1");
        set resp.http.T = regsuball(resp.http.T, "%C2%([AB].)", "=\1");
        set resp.http.T = regsuball(resp.http.T, "%C3%8(.)", "=C\1");
        set resp.http.T = regsuball(resp.http.T, "%C3%9(.)", "=D\1");
        set resp.http.T = regsuball(resp.http.T, "%C3%A(.)", "=E\1");
        set resp.http.T = regsuball(resp.http.T, "%C3%B(.)", "=F\1");
        set resp.http.T = regsuball(resp.http.T, "%E2%82%AC", "=80");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%9A", "=82");
        set resp.http.T = regsuball(resp.http.T, "%C6%92", "=83");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%9E", "=84");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%A6", "=85");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%A0", "=86");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%A1", "=87");
        set resp.http.T = regsuball(resp.http.T, "%CB%86", "=88");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%B0", "=89");
        set resp.http.T = regsuball(resp.http.T, "%C5%A0", "=8A");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%B9", "=8B");
        set resp.http.T = regsuball(resp.http.T, "%C5%92", "=8C");
        set resp.http.T = regsuball(resp.http.T, "%C5%BD", "=8E");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%98", "=91");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%99", "=92");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%9C", "=93");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%9D", "=94");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%A2", "=95");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%93", "=96");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%94", "=97");
        set resp.http.T = regsuball(resp.http.T, "%CB%9C", "=98");
        set resp.http.T = regsuball(resp.http.T, "%E2%84%A2", "=99");
        set resp.http.T = regsuball(resp.http.T, "%C5%A1", "=9A");
        set resp.http.T = regsuball(resp.http.T, "%E2%80%BA", "=9B");
        set resp.http.T = regsuball(resp.http.T, "%C5%93", "=9C");
        set resp.http.T = regsuball(resp.http.T, "%C5%BE", "=9E");
        set resp.http.T = regsuball(resp.http.T, "%C5%B8", "=9F");
        set resp.http.T = regsuball(resp.http.T, "%[C-D].%..|%E.%..%..|%F.%..%..%..", "=3F");
        set resp.http.X-Error-Message =
            blob.transcode(decoding = URL, encoded = regsuball(resp.http.T, "=", "%"));
        unset resp.http.T;
    }
}
