# SPDX-License-Identifier: BSD-3-Clause
"""What the example agent does with data of every type, tested over pipes: data_test.py AGENT"""
import pathlib

import case
from case import AgentTest
from client import BASE, Reply

STORE = "urn:store"
YANG = "urn:ietf:params:xml:ns:yang:1"
MODEL = f"""<module name="store" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:s="{STORE}">
  <yang-version value="1.1"/><namespace uri="{STORE}"/><prefix value="s"/>
  <identity name="kind"/>
  <identity name="small"><base name="kind"/></identity>
  <typedef name="marks"><type name="bits">
    <bit name="late"><position value="7"/></bit><bit name="early"><position value="2"/></bit>
  </type></typedef>
  <container name="store">
    <list name="shelf"><key value="number"/>
      <leaf name="number"><type name="int32"/></leaf>
      <leaf name="width"><type name="decimal64"><fraction-digits value="2"/></type></leaf>
      <leaf name="marks"><type name="marks"/></leaf>
      <leaf name="image"><type name="binary"/></leaf>
      <leaf name="label"><type name="string"/></leaf>
    </list>
    <leaf-list name="kind"><type name="identityref"><base name="kind"/></type></leaf-list>
    <leaf-list name="mixed">
      <type name="union"><type name="uint8"/><type name="string"/></type>
    </leaf-list>
    <anyxml name="note"/>
    <list name="rule"><key value="from to"/><ordered-by value="user"/>
      <leaf name="from"><type name="uint8"/></leaf>
      <leaf name="to"><type name="identityref"><base name="kind"/></type></leaf>
      <leaf name="label"><type name="string"/></leaf>
    </list>
    <leaf-list name="turn"><type name="uint8"/><ordered-by value="user"/></leaf-list>
    <choice name="power">
      <case name="line">
        <list name="feed"><key value="number"/><leaf name="number"><type name="uint32"/></leaf></list>
      </case>
      <leaf name="battery"><type name="uint8"/></leaf>
    </choice>
  </container>
  <leaf name="open"><type name="boolean"/></leaf>
</module>"""


class DataTest(AgentTest):
    def setUp(self):
        super().setUp()
        folder = pathlib.Path(self.state) / "models"
        folder.mkdir()
        (folder / "store.yin").write_text(MODEL)
        self.session = self.open("--models", str(folder), "--module", "store")

    def store(self, inner):
        return (f'<store xmlns="{STORE}" xmlns:s="{STORE}" xmlns:yang="{YANG}" xmlns:nc="{BASE}">'
                f"{inner}</store>")

    def set(self, inner, options=""):
        reply = self.session.edit(self.store(inner), options)
        self.assertTrue(reply.ok(), reply.text)

    def values(self, name, match=None):
        reply = self.session.get_config(match)
        self.assertIsNone(reply.error(), reply.text)
        return reply.values(STORE, name)


class Values(DataTest):
    def test_numbers_are_kept_in_their_one_form(self):
        for number, text in enumerate(("7", "+7", "007", " 7 ", "-0", "0", "-012")):
            self.set(f"<shelf><number>{text}</number><label>{number}</label></shelf>")
        self.assertEqual(self.values("number"), ["7", "0", "-12"])
        self.assertEqual(self.values("label"), ["3", "5", "6"])
        self.assertIsNone(self.session.rpc("<validate><source><running/></source></validate>").error())

    def test_other_values_have_one_form_too(self):
        forms = [("width", "001.50", "1.5"), ("width", "-0.00", "0.0"), ("width", "+3", "3.0"),
                 ("width", ".25", "0.25"), ("width", "-10.20", "-10.2"),
                 ("marks", "late early", "early late"),
                 ("image", " YWJj\n", "YWJj"), ("label", " 01 ", " 01 ")]
        for name, text, form in forms:
            with self.subTest(name=name, text=text):
                self.set(f"<shelf><number>1</number><{name}>{text}</{name}></shelf>")
                self.assertEqual(self.values(name), [form])

    def test_entries_that_differ_in_writing_only_are_one(self):
        twice = "<shelf><number>1</number></shelf><shelf><number>01</number></shelf>"
        self.assertEqual(self.session.edit(self.store(twice)).error(), "bad-element")
        self.set("<mixed>5</mixed><mixed>x05</mixed>")
        create = '<mixed nc:operation="create">{}</mixed>'
        self.assertEqual(self.session.edit(self.store(create.format("05"))).error(), "data-exists")
        self.set(create.format("500") + create.format("0500"))
        self.set('<kind xmlns:q="urn:store">q:small</kind>')
        self.set('<kind>small</kind><mixed nc:operation="delete">+5</mixed>')
        self.assertEqual(self.values("kind"), ["store:small"])
        self.assertEqual(self.values("mixed"), ["x05", "500", "0500"])


class Filters(DataTest):
    def setUp(self):
        super().setUp()
        self.set("<shelf><number>1</number><width>1.5</width><marks>early late</marks></shelf>"
                 '<shelf><number>2</number></shelf><mixed>a</mixed><note><x c="d"/><x c="e"/></note>')
        self.session.edit(f'<open xmlns="{STORE}">true</open>')

    def test_contents_match_whatever_way_they_are_written(self):
        for content in ("<number>+01</number>", "<width> 1.50 </width>", "<marks>late  early</marks>"):
            match = self.store(f"<shelf>{content}</shelf>")
            self.assertEqual(self.values("number", match), ["1"], content)

    def test_the_outermost_elements_of_a_namespace_are_siblings(self):
        wanted = f'<open xmlns="{STORE}"> {{}} </open>'
        self.assertEqual(self.values("open", wanted.format("false")), [])
        both = wanted.format("{}") + self.store("<mixed/>")
        self.assertEqual(self.values("mixed", both.format("false")), [])
        self.assertEqual(self.values("mixed", both.format("true")), ["a"])
        self.assertEqual(self.values("number", both.format("true")), [])
        # A content alone selects all on its level.
        self.assertEqual(self.values("number", wanted.format("true")), ["1", "2"])
        # What has another namespace is apart.
        other = both.format("false").replace(f'open xmlns="{STORE}"', 'open xmlns="urn:other"')
        self.assertEqual(self.values("mixed", other), ["a"])

    def test_attributes_match_those_of_the_data(self):
        reply = self.session.get_config(self.store('<note><x c="e"/></note>'))
        self.assertEqual([x.get("c") for x in reply.root.iter(f"{{{STORE}}}x")], ["e"])
        self.assertEqual(self.values("number", self.store('<shelf c="e"/>')), [])

    def test_state_is_matched_by_its_types_too(self):
        # A shelf of the YANG library: its key comes with what is selected.
        library = "urn:ietf:params:xml:ns:yang:ietf-yang-library"
        reply = self.session.rpc('<get><filter type="subtree">'
                                 f'<yang-library xmlns="{library}"><datastore>'
                                 '<name xmlns:x="urn:ietf:params:xml:ns:yang:ietf-datastores">'
                                 "x:running</name><schema/></datastore></yang-library></filter></get>")
        self.assertEqual(len(reply.values(library, "datastore")), 1, reply.text)
        self.assertEqual(reply.values(library, "schema"), ["all"])


class PublishedFilters(DataTest):
    """The examples of RFC 6241 section 6.4, but those that name elements by attributes."""
    SPACE = "http://example.com/schema/1.2/config"
    LEAVES = "".join(f'<leaf name="{name}"><type name="string"/></leaf>'
                     for name in ("name", "type", "full-name"))
    OTHER = (f'<module name="users" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:u="{SPACE}">'
             f'<namespace uri="{SPACE}"/><prefix value="u"/><container name="top">'
             f'<container name="users"><list name="user"><key value="name"/>{LEAVES}'
             '<container name="company-info"><leaf name="dept"><type name="uint32"/></leaf>'
             '<leaf name="id"><type name="uint32"/></leaf></container></list></container>'
             "</container></module>")
    USER = ("<user><name>{}</name><type>{}</type><full-name>{}</full-name>"
            "<company-info><dept>{}</dept><id>{}</id></company-info></user>")
    ROOT = USER.format("root", "superuser", "Charlie Root", 1, 1)
    FRED = USER.format("fred", "admin", "Fred Flintstone", 2, 2)
    BARNEY = USER.format("barney", "admin", "Barney Rubble", 2, 3)
    ALL = ROOT + FRED + BARNEY

    def setUp(self):
        super().setUp()
        (pathlib.Path(self.state) / "models" / "users.yin").write_text(self.OTHER)
        self.session = self.open("--models", f"{self.state}/models", "--module", "users")
        self.assertTrue(self.session.edit(self.top(f"<users>{self.ALL}</users>")).ok())

    def top(self, inner):
        return f'<top xmlns="{self.SPACE}">{inner}</top>'

    def test_each_selects_what_is_printed_beside_it(self):
        one = "<users><user><name>fred</name>{}</user></users>"
        several = ("<users><user><name>root</name><company-info/></user>"
                   "<user><name>fred</name><company-info><id/></company-info></user>"
                   "<user><name>barney</name><type>superuser</type>"
                   "<company-info><dept/></company-info></user></users>")
        rows = [
            (self.top("<users/>"), f"<users>{self.ALL}</users>"),
            (self.top("<users><user/></users>"), f"<users>{self.ALL}</users>"),
            (self.top("<users><user><name/></user></users>"),
             "<users>" + "".join(f"<user><name>{name}</name></user>"
                                 for name in ("root", "fred", "barney")) + "</users>"),
            (self.top(one.format("")), f"<users>{self.FRED}</users>"),
            (self.top(one.format("<type/><full-name/>")),
             one.format("<type>admin</type><full-name>Fred Flintstone</full-name>")),
            (self.top(several),
             "<users><user><name>root</name><company-info><dept>1</dept><id>1</id></company-info>"
             "</user><user><name>fred</name><company-info><id>2</id></company-info></user></users>"),
        ]
        for match, expected in rows:
            data = self.session.get_config(match).root[0]
            wanted = Reply(f"<data>{self.top(expected)}</data>").root
            self.assertEqual(self.tree(data), self.tree(wanted), match)
        self.assertEqual(len(self.session.get_config("").root[0]), 0)
        self.assertEqual(self.tree(self.session.get_config().root[0]),
                         self.tree(Reply(f"<data>{self.top(rows[0][1])}</data>").root))

    def tree(self, element):
        return [(child.tag, child.text, self.tree(child)) for child in element]


class Order(DataTest):
    def put(self, attributes, value, **errors):
        self.edit(f"<turn {attributes}>{value}</turn>", **errors)

    def edit(self, inner, tag=None, app_tag=None, attribute=None):
        reply = self.session.edit(self.store(inner))
        self.assertEqual((reply.error(), reply.error("error-app-tag"), reply.error("bad-attribute")),
                         (tag, app_tag, attribute), reply.text)

    def test_entries_of_a_leaf_list_go_where_the_client_wants_them(self):
        for value in 1, 2, 3:
            self.put("", value)
        self.put('yang:insert="first"', 4)
        self.put('yang:insert="before" yang:value="02"', 5)
        self.put('yang:insert="after" yang:value="1"', 6)
        self.put('yang:insert="last"', 7)
        self.assertEqual(self.values("turn"), ["4", "1", "6", "5", "2", "3", "7"])
        # An entry that is there moves, and stays without the attribute.
        self.put('yang:insert="first"', 7)
        self.put('nc:operation="replace" yang:insert="after" yang:value="7"', 3)
        self.put('yang:insert="before" yang:value="5"', 5)
        self.put("", 4)
        self.put('nc:operation="replace"', 4)
        self.assertEqual(self.values("turn"), ["7", "3", "4", "1", "6", "5", "2"])

    def test_entries_of_a_list_are_named_by_their_keys(self):
        rule = "<rule{}><from>{}</from><to>s:small</to><label>{}</label></rule>"
        self.edit(rule.format("", 1, "a") + rule.format("", 2, "b"))
        key = ' yang:insert="{}" yang:key="{}"'
        self.edit(rule.format(key.format("before", "[s:from='1'][s:to='s:small']"), 3, "c"))
        self.edit(rule.format(key.format("after", ' [ from = "01" ] [to=\'small\'] '
                                         .replace('"', "&quot;")), 4, "d"))
        self.edit(rule.format(' yang:insert="first"', 2, "b"))
        self.assertEqual(self.values("label"), ["b", "c", "a", "d"])
        for wrong in ("[s:from='9'][s:to='s:small']", "[s:from='1']", "[nc:from='1'][s:to='s:small']",
                      "s:from='1'", "[s:from='1'][s:to='s:small'", "", "[s:from=1]", "[", "[=''"):
            self.edit(rule.format(key.format("before", wrong), 5, "e"), "bad-attribute",
                      "missing-instance", "key")
        self.assertEqual(self.values("label"), ["b", "c", "a", "d"])

    def test_wrong_attributes_are_refused(self):
        self.put("", 1)
        self.put('yang:insert="second"', 2, tag="bad-attribute", attribute="insert")
        self.put('yang:insert="before"', 2, tag="missing-attribute", attribute="value")
        self.put('yang:value="1"', 2, tag="bad-attribute", attribute="value")
        self.put('yang:insert="first" yang:value="1"', 2, tag="bad-attribute", attribute="value")
        self.put('yang:insert="after" yang:key="1"', 2, tag="unknown-attribute", attribute="key")
        self.put('yang:insert="after" yang:value="9"', 2, tag="bad-attribute",
                 app_tag="missing-instance", attribute="value")
        self.put('insert="first"', 2, tag="unknown-attribute", attribute="insert")
        # Not ordered by the user.
        self.edit('<mixed yang:insert="first">1</mixed>', tag="unknown-attribute", attribute="insert")
        self.assertEqual(self.values("turn"), ["1"])

    def test_a_whole_configuration_has_no_attributes_of_an_edit(self):
        for what in ('<turn nc:operation="remove">1</turn>', '<turn yang:insert="first">1</turn>'):
            source = f"<source><config>{self.store(what)}</config></source>"
            for operation in (f"<validate>{source}</validate>",
                              f"<copy-config><target><running/></target>{source}</copy-config>"):
                self.assertEqual(self.session.rpc(operation).error(), "unknown-attribute")
        free = self.store('<note nc:free="x"><a b="c"/></note>').replace(' nc:free="x"', "")
        self.assertIsNone(self.session.rpc(
            f"<validate><source><config>{free}</config></source></validate>").error())


class Cases(DataTest):
    def test_entries_in_a_case_take_time_in_proportion_to_their_number(self):
        self.set("<battery>1</battery>")
        entries = "".join(f"<feed><number>{number}</number></feed>" for number in range(40000))
        # A time that grew with the square would be beyond what a client here waits.
        self.set(entries)
        self.assertEqual(self.values("battery"), [])
        self.set('<battery nc:operation="create">1</battery>')
        self.assertEqual(self.values("number"), [])


if __name__ == "__main__":
    case.run()
