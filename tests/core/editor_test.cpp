#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string bound =
    platform::to_cp1252(section("COPIE", draw_l, "C:Copier") + section("TEXTE", draw_slope, "T:Bonjour") +
                        section("PROG", draw_slope, "P:/usr/bin/xterm") + section("RIEN", draw_slope, "") +
                        section("AUTRE", draw_slope, "Z:rien") + section("NU", draw_slope, "T:"));

struct Editing : Scene {
  Editing() : Scene(bound) { start(); }
  Actions& open(int row) {
    pick(row);
    fire(programme.sk().LV.DblClick);
    return programme.actions()();
  }
  bool loaded() { return programme.actions().loaded(); }
  std::string action(int row) { return programme.sk().LV.row(row).SubItems(2); }
  std::string stored(std::size_t slot) { return programme.table().patrons[slot].Action; }
  void key(const platform::KeyPressHandler& handler, int code) { fire(handler, code); }
  std::int32_t theme() { return programme.theme().couleur_theme; }
};

TEST(Editor, ShowsWhatIsBound) {
  struct State {
    int row;
    int heading;  // 0: none
    bool text, program;
    std::string content;
  };
  for (const State& state :
       {State{1, 1, false, false, ""}, State{2, 2, true, false, "Bonjour"}, State{3, 3, false, true, "/usr/bin/xterm"},
        State{4, 0, false, false, ""}, State{5, 0, false, false, ""}, State{6, 2, true, false, ""}}) {
    Editing editing;
    Actions& form = editing.open(state.row);
    for (int heading = 1; heading <= 3; ++heading) {
      EXPECT_EQ(form.lblCom(heading).ForeColor == editing.theme(), heading == state.heading) << state.row << heading;
    }
    EXPECT_EQ(form.Texte.Visible.get(), state.text) << state.row;
    EXPECT_EQ(form.Prog.Visible.get(), state.program) << state.row;
    EXPECT_EQ((state.text ? form.Texte : form.TextProg).Text.get(), state.content) << state.row;
    for (const auto& command : form.lblComC) {
      EXPECT_FALSE(command->Visible) << command->Caption.get();
      EXPECT_EQ(command->ForeColor == editing.theme(), state.row == 1 && command->Caption.get() == "Copier");
    }
  }
}

TEST(Editor, LoadsInTheOrderTold) {
  Editing editing;
  editing.programme.sk().Left = 600;
  const std::size_t before = editing.desktop.journal.lines.size();
  Actions& form = editing.open(4);
  std::vector<std::string> lines(editing.desktop.journal.lines.begin() + static_cast<std::ptrdiff_t>(before),
                                 editing.desktop.journal.lines.end());
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("Refresh"); });
  const std::string window = std::to_string(form.hWnd);
  EXPECT_THAT(lines,
              ElementsAre("load form Actions", "AddFontResourceA /opt/strokemind/OCRAEXT.TTF", "PostMessageA 0 29 0 0",
                          "Hide Actions", "SetForegroundWindow " + window, "AnimateWindow " + window + " 1000 a0000",
                          "SetWindowPos " + window + " -1 0 0 0 0 53", "Show Actions"));
  EXPECT_EQ(form.Left.get(), 600);
  EXPECT_EQ(form.lblCom(0).Caption.get(), "Choisir une des 3 possibilités suivantes pour le patron: RIEN");
  EXPECT_EQ(form.lblComC(11).Font.get().Name, "OCR A Extended");
  EXPECT_EQ(form.lblComC(12).Font.get().Name, "MS Sans Serif");
  EXPECT_EQ(form.lblCom(2).MouseIcon.get().resource, "pointer");
  EXPECT_EQ(form.Pictitre.canvas.colour_at(5, 14), 0x00FF00);
}

TEST(Editor, BindsACommandAtTheRelease) {
  Editing editing;
  Actions& form = editing.open(4);
  form.lblCom(1).MouseDown({1, 0, 1, 1});
  EXPECT_TRUE(form.lblComC(16).Visible);
  form.lblComC(16).MouseDown({2, 0, 1, 1});
  EXPECT_EQ(form.lblComC(16).ForeColor.get(), editing.theme());
  editing.fire(form.lblComC(16).MouseUp, platform::MouseEvent{2, 0, 999, 999});
  EXPECT_FALSE(editing.loaded());
  EXPECT_EQ(editing.action(4), "C:Exécuter");
  EXPECT_EQ(editing.stored(3), "C:Exécuter");
}

TEST(Editor, BindsATextOrAProgramWithEnter) {
  Editing editing;
  Actions& form = editing.open(4);
  form.lblCom(2).MouseDown({1, 0, 1, 1});
  EXPECT_EQ(form.Texte.SelText(), form.Texte.Text.get()) << "the whole prompt is selected";
  EXPECT_THAT(form.Texte.Text.get(), testing::StartsWith("Entrer ici le texte de votre choix: \r\nValider"));
  EXPECT_EQ(editing.journal("SetFocus").back(), "SetFocus Texte");
  form.Texte.MouseMove({0, 0, 1, 1});
  EXPECT_EQ(form.Texte.Text.get(), "") << "the pointer wipes the prompt";
  form.Texte.Text = "deux\r\nlignes";
  form.Texte.SelLength = 4;
  form.Texte.MouseMove({0, 0, 1, 1});
  EXPECT_EQ(form.Texte.Text.get(), "deux\r\nlignes");
  editing.key(form.Texte.KeyPress, 'x');
  editing.key(form.Texte.KeyPress, 13);
  EXPECT_FALSE(editing.loaded());
  EXPECT_EQ(editing.action(4), "T:deux\r\nlignes");
  EXPECT_EQ(editing.stored(3), "T:deux\r\nlignes");
  editing.fire(editing.programme.sk().lblpatron.DblClick);
  EXPECT_THAT(editing.saved(), testing::HasSubstr("T:deux{ENTER}lignes"));

  Actions& again = editing.open(2);
  again.lblCom(3).MouseDown({1, 0, 1, 1});
  editing.key(again.TextProg.KeyPress, 27);
  EXPECT_TRUE(editing.loaded());
  editing.key(again.TextProg.KeyPress, 13);
  EXPECT_EQ(editing.action(2), "P:Entrer ici son chemin d'accès:") << "an untouched prompt is a path like others";
}

TEST(Editor, HeadingsAnswerTheLeftButtonAndTakeTheColourForAny) {
  Editing editing;
  Actions& form = editing.open(2);
  form.lblCom(3).MouseDown({2, 0, 1, 1});
  EXPECT_TRUE(form.Texte.Visible);
  EXPECT_EQ(form.lblCom(2).ForeColor.get(), vert_sombre);
  EXPECT_EQ(form.lblCom(3).ForeColor.get(), editing.theme());
  editing.programme.theme().couleur_theme = 0x123456;
  form.lblCom(0).MouseDown({1, 0, 1, 1});
  EXPECT_EQ(form.lblCom(0).ForeColor.get(), 0x123456);
  form.lblCom(1).MouseDown({1, 0, 1, 1});
  EXPECT_EQ(form.lblCom(0).ForeColor.get(), 0x123456) << "and leaves it so";
  EXPECT_FALSE(form.Texte.Visible);
}

TEST(Editor, EscapeHidesFromTheTextAndClosesElsewhere) {
  Editing editing;
  Actions& form = editing.open(2);
  editing.key(form.Texte.KeyPress, 27);
  EXPECT_TRUE(editing.loaded());
  EXPECT_FALSE(editing.programme.actions().on_screen());
  EXPECT_THAT(editing.journal("DLL_STOP"), IsEmpty());
  // Another row is picked, and the hidden form comes back as it was: it binds what is selected now.
  editing.open(4);
  EXPECT_TRUE(editing.programme.actions().on_screen());
  EXPECT_THAT(form.lblCom(0).Caption.get(), testing::EndsWith(": TEXTE"));
  editing.key(form.Texte.KeyPress, 13);
  EXPECT_EQ(editing.action(4), "T:Bonjour");

  Actions& other = editing.open(1);
  editing.key(other.KeyPress, 'a');
  EXPECT_TRUE(editing.loaded());
  editing.key(other.KeyPress, 27);
  EXPECT_FALSE(editing.loaded());
  EXPECT_EQ(editing.action(1), "C:Copier");
}

TEST(Editor, AnyCloseSetsTheHookRunning) {
  Editing editing;
  editing.desktop.menu_answers = {"Pause"};
  editing.desktop.on_icon(editing.programme.sk(), platform::WM_MOUSEMOVE);
  EXPECT_EQ(editing.programme.sk().Icon.get().handle, static_cast<std::uint32_t>(image_arret));
  Actions& form = editing.open(1);
  editing.fire(form.Bouton(4).Click);
  EXPECT_EQ(editing.journal("DLL_STOP").back(), "DLL_STOP 0");
  EXPECT_EQ(editing.programme.sk().Icon.get().handle, static_cast<std::uint32_t>(image_marche));
}

TEST(Editor, ClearsAfterAsking) {
  Editing editing;
  Actions& form = editing.open(1);
  editing.desktop.box_answers = {platform::vbNo};
  editing.fire(form.Raz.Click);
  EXPECT_EQ(editing.action(1), "C:Copier");
  editing.desktop.box_answers = {platform::vbYes};
  editing.fire(form.Raz.Click);
  editing.fire(form.Raz.Click);
  EXPECT_THAT(editing.journal("MsgBox"),
              testing::AllOf(testing::SizeIs(2),
                             testing::Each("MsgBox [Etes-vous sûr de vouloir supprimer l'Action du patron: COPIE] 4164 "
                                           "[Strokemind]")));
  EXPECT_EQ(editing.action(1), "");
  EXPECT_TRUE(editing.loaded());
  EXPECT_EQ(editing.stored(0), "C:Copier") << "the table follows later";
  editing.click(3);
  EXPECT_EQ(editing.action(1), "") << "new rows do not bring it back";
  EXPECT_EQ(editing.stored(0), "");
}

TEST(Editor, MarksAndMoves) {
  Editing editing;
  Actions& form = editing.open(1);
  const platform::MouseEvent at{0, 0, 1, 1};
  form.Bouton(4).MouseMove(at);
  form.Raz.MouseMove(at);
  EXPECT_EQ(form.Shape3(4).BackColor.get(), editing.theme());
  EXPECT_EQ(editing.info(), "Fermer Actions.");
  form.Bouton(4).MouseDown(at);
  EXPECT_EQ(form.Shape3(4).BackColor.get(), 0);
  EXPECT_EQ(form.Line2(1).BorderStyle.get(), platform::border_solid);
  form.MouseMove(at);
  EXPECT_EQ(form.Line2(0).BorderStyle.get(), platform::border_none);
  EXPECT_EQ(form.Shape3(4).BackStyle.get(), platform::transparent);
  const std::string window = std::to_string(form.hWnd);
  form.Pictitre.MouseDown({2, 0, 1, 1});
  form.Pictitre.MouseDown({1, 0, 1, 1});
  EXPECT_THAT(editing.journal("PostMessageA " + window), ElementsAre("PostMessageA " + window + " 161 2 0"));
  EXPECT_EQ(editing.desktop.journal.lines.back(), "ReleaseCapture");
}

// Asked to go while a box of the editor is open, the program ends as ever.
TEST(Editor, EndsCleanlyUnderAnOpenBox) {
  Editing editing;
  Actions& form = editing.open(1);
  editing.desktop.during_dialog = [&] { editing.programme.quit(); };
  editing.desktop.box_answers = {platform::vbYes};
  editing.fire(form.Raz.Click);
  EXPECT_EQ(editing.desktop.exit_status(), 0);

  Editing loading;
  loading.desktop.journal.faults["font"] = 1;
  loading.desktop.during_dialog = [&] { loading.programme.quit(); };
  loading.pick(1);
  loading.fire(loading.programme.sk().LV.DblClick);
  EXPECT_EQ(loading.desktop.exit_status(), 0);
}

}  // namespace
