#include "Support/SampleMessages.h"

namespace brimvale::testing {

bool makeDatabase(const std::string &path, const std::vector<SampleChat> &chats,
                  const std::vector<SampleMessage> &messages) {
    return runStatements(path, statementsOf(chats, messages));
}

std::vector<HostileDatabase> hostileDatabases(const std::string &command) {
    const std::string run = "edit('a','" + command + "; :')";
    const std::string usual = statementsOf({{1, "Team", "id"}}, {{.text = "text"}});
    const auto inPlaceOf = [](const std::string &table, const std::string &statement) {
        return "ALTER TABLE " + table + " RENAME TO other;" + statement;
    };
    const std::string view = "CREATE VIEW message AS SELECT 1 AS ROWID, 1 AS is_from_me, 5 AS date, " + run +
                             " AS text, NULL AS attributedBody, 0 AS cache_has_attachments, "
                             "'SMS' AS service, 0 AS associated_message_type;";
    const std::string chatView =
        "CREATE VIEW chat AS SELECT 1 AS ROWID, " + run + " AS display_name, 'id' AS chat_identifier;";
    // Written into the list of tables itself, where no statement would be let through.
    const auto forged = [](const std::string &change) {
        return "PRAGMA writable_schema=ON;" + change + "PRAGMA writable_schema=OFF;";
    };
    const std::string quotedView = "'CREATE VIEW NAME AS SELECT edit(''a'',''" + command + "; :'')'";
    const auto viewNamed = [&](const std::string &name) {
        std::string text = quotedView;
        return text.replace(text.find("NAME"), 4, name);
    };
    return {
        {"a view for the messages", usual + inPlaceOf("message", view)},
        {"a view for the chats", usual + inPlaceOf("chat", chatView)},
        {"a view by a name in capitals",
         usual + inPlaceOf("message", std::string(view).replace(view.find("message"), 7, "MESSAGE"))},
        {"a computed column", usual + "ALTER TABLE message ADD COLUMN guid AS (upper(text));"},
        {"a virtual table",
         usual + inPlaceOf("chat_message_join",
                           "CREATE VIRTUAL TABLE chat_message_join USING fts5(chat_id, message_id);")},
        {"a false statistics table",
         usual +
             forged("INSERT INTO sqlite_master VALUES('view','sqlite_stat1','sqlite_stat1',0," +
                    viewNamed("sqlite_stat1") + ");") +
             inPlaceOf("chat", chatView)},
        {"a view that is called a table",
         usual + forged("UPDATE sqlite_master SET sql=" + viewNamed("message") + " WHERE name='message';")},
        {"a virtual table that pretends to have pages",
         usual +
             inPlaceOf("message",
                       "CREATE VIRTUAL TABLE message USING rtree_i32(id, date, until, +is_from_me, +text, "
                       "+attributedBody, +cache_has_attachments, +service, +associated_message_type);"
                       "INSERT INTO message VALUES(1,5,6,0,'text',NULL,0,'SMS',0);") +
             forged("UPDATE sqlite_master SET rootpage=2 WHERE name='message';")},
        {"a view in the place of a function",
         usual + "CREATE VIEW pragma_table_xinfo AS SELECT " + run + " AS hidden;"},
    };
}

std::vector<std::string> hostileTexts() {
    const std::string harm = "document.documentElement.dataset.harmed='yes'";
    return {"<script>" + harm + "</script>",
            "<img src=x onerror=\"" + harm + "\">",
            "\"><script>" + harm + "</script>",
            "' onclick='" + harm + "' x='",
            "</header></section></main><script>" + harm + "</script>",
            "</div></style><svg onload=" + harm + ">",
            "--><iframe src=\"javascript:top." + harm + "\"></iframe>",
            "&lt;script&gt;" + harm + "&lt;/script&gt;",
            "</textarea></title><body onload=" + harm + ">"};
}

} // namespace brimvale::testing
